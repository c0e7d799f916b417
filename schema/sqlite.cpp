#include "schema/dialect.h"

namespace qmx {
namespace {

// Texts compare letter by letter, which is SQLite's own way; the declared types of dates and numbers are what the
// driver goes by when it reads them.
class Sqlite : public Dialect {
  std::string Type(const LocalColumn& column) const override {
    switch (column.type) {
      case Variant::Kind::Int16:
        return "smallint";
      case Variant::Kind::Int32:
        return "integer";
      case Variant::Kind::Double:
        return "double precision";
      case Variant::Kind::DateTime:
        return "datetime";
      default:
        return "varchar(" + std::to_string(column.width) + ")";
    }
  }
};

}  // namespace

const Dialect& SqliteDialect() {
  static const Sqlite kDialect;
  return kDialect;
}

}  // namespace qmx
