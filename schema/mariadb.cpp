#include "schema/dialect.h"

namespace qmx {
namespace {

// Texts compare letter by letter and blank by blank, as the ERP's codes do; the server's own way takes "a" for "A".
// Rows are kept in an engine with transactions.
class Mariadb : public Dialect {
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
  std::string TableOptions() const override {
    return " engine = InnoDB character set utf8mb4 collate utf8mb4_nopad_bin";
  }
};

}  // namespace

const Dialect& MariadbDialect() {
  static const Mariadb kDialect;
  return kDialect;
}

}  // namespace qmx
