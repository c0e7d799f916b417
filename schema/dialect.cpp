#include "schema/dialect.h"

#include <algorithm>

#include "platform/names.h"

namespace qmx {
namespace {

// Codes compare letter by letter and blank by blank, as the ERP's do. MariaDB's own way takes "a" for "A"; and its rows
// are to be kept in an engine with transactions.
constexpr Dialect kSqlite = {"datetime", ""};
constexpr Dialect kPostgresql = {"timestamp(0)", ""};
constexpr Dialect kMariadb = {"datetime", " engine = InnoDB character set utf8mb4 collate utf8mb4_nopad_bin"};

std::string Type(const LocalColumn& column, const Dialect& dialect) {
  switch (column.type) {
    case Variant::Kind::Int16:
      return "smallint";
    case Variant::Kind::Int32:
      return "integer";
    case Variant::Kind::Double:
      return "double precision";
    case Variant::Kind::DateTime:
      return dialect.dateTimeType;
    default:
      return "varchar(" + std::to_string(column.width) + ")";
  }
}

std::string Joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

}  // namespace

std::string Dialect::CreateTable(const LocalTable& table) const {
  std::string text = "create table " + table.name + " (";
  const char* separator = "\n  ";
  for (const LocalColumn& column : table.columns) {
    text += separator + column.name + " " + Type(column, *this);
    if (column.startsAtZero) text += " default 0";
    if (std::find(table.key.begin(), table.key.end(), column.name) != table.key.end()) text += " not null";
    separator = ",\n  ";
  }
  if (!table.key.empty()) text += ",\n  primary key (" + Joined(table.key) + ")";
  return text + "\n)" + tableOptions;
}

std::vector<std::string> Dialect::CreateIndexes(const LocalTable& table) const {
  if (table.indexed.empty()) return {};
  return {"create index if not exists " + table.name + "_by_" + table.indexed.front() + " on " + table.name + " (" +
          Joined(table.indexed) + ")"};
}

const Dialect& SqliteDialect() { return kSqlite; }

const Dialect* DialectOfSystem(std::string_view system) {
  if (SameName(system, "SQLite")) return &kSqlite;
  if (SameName(system, "PostgreSQL")) return &kPostgresql;
  if (SameName(system, "MariaDB") || SameName(system, "MySQL")) return &kMariadb;
  return nullptr;
}

}  // namespace qmx
