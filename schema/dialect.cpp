#include "schema/dialect.h"

#include <algorithm>

#include "platform/names.h"

namespace qmx {
namespace {

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
    text += separator + column.name + " " + Type(column);
    if (column.startsAtZero) text += " default 0";
    if (std::find(table.key.begin(), table.key.end(), column.name) != table.key.end()) text += " not null";
    separator = ",\n  ";
  }
  if (!table.key.empty()) text += ",\n  primary key (" + Joined(table.key) + ")";
  return text + "\n)" + TableOptions();
}

std::vector<std::string> Dialect::CreateIndexes(const LocalTable& table) const {
  if (table.indexed.empty()) return {};
  return {"create index if not exists " + table.name + "_by_" + table.indexed.front() + " on " + table.name + " (" +
          Joined(table.indexed) + ")"};
}

const Dialect* DialectOfSystem(std::string_view system) {
  if (SameName(system, "SQLite")) return &SqliteDialect();
  if (SameName(system, "PostgreSQL")) return &PostgresqlDialect();
  if (SameName(system, "MariaDB") || SameName(system, "MySQL")) return &MariadbDialect();
  return nullptr;
}

}  // namespace qmx
