#include "schema/dialect.h"

namespace qmx {
namespace {

// Date-times are whole seconds without a zone.
class Postgresql : public Dialect {
  std::string Type(const LocalColumn& column) const override {
    switch (column.type) {
      case Variant::Kind::Int16:
        return "smallint";
      case Variant::Kind::Int32:
        return "integer";
      case Variant::Kind::Double:
        return "double precision";
      case Variant::Kind::DateTime:
        return "timestamp(0)";
      default:
        return "varchar(" + std::to_string(column.width) + ")";
    }
  }
};

}  // namespace

const Dialect& PostgresqlDialect() {
  static const Postgresql kDialect;
  return kDialect;
}

}  // namespace qmx
