#include "schema/dialect.h"

#include <algorithm>

#include "platform/join.h"
#include "platform/names.h"

namespace qmx {
namespace {

// Codes compare letter by letter and blank by blank, as in the ERP, but MariaDB's default collation takes "a" for "A".
// Its tables need an engine with transactions.
constexpr Dialect kSqlite = {"datetime", "", " collate nocase", "",
                             "select count(*) from sqlite_master where type = 'index' and name = '#'"};
constexpr Dialect kPostgresql = {
    "timestamp(0)", "", " collate qmx_any_case",
    "create collation if not exists qmx_any_case (provider = icu, locale = 'und-u-ks-level2', deterministic = false)",
    "select count(*) from pg_class where relkind = 'i' and oid = to_regclass('#')"};
constexpr Dialect kMariadb = {"datetime", " engine = InnoDB character set utf8mb4 collate utf8mb4_nopad_bin",
                              " collate utf8mb4_general_nopad_ci", "",
                              "select count(distinct index_name) from information_schema.statistics"
                              " where table_schema = database() and index_name = '#'"};

std::string IndexName(const LocalTable& table) { return table.name + "_by_" + table.indexed.front(); }

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

}  // namespace

std::string Dialect::CreateTable(const LocalTable& table) const { return CreateTable(table, ""); }

std::vector<std::string> Dialect::CreateTableOfAnyCase(const LocalTable& table) const {
  const auto isTableCode = [](const LocalColumn& column) { return column.isTableCode; };
  if (std::none_of(table.columns.begin(), table.columns.end(), isTableCode)) return {};
  if (*makesAnyCase == '\0') return {CreateTable(table, anyCase)};
  return {makesAnyCase, CreateTable(table, anyCase)};
}

std::string Dialect::CreateTable(const LocalTable& table, const char* ofTableCodes) const {
  std::string text = "create table " + table.name + " (";
  const char* separator = "\n  ";
  for (const LocalColumn& column : table.columns) {
    text += separator + column.name + " " + Type(column, *this);
    if (column.isTableCode) text += ofTableCodes;
    if (column.startsAtZero) text += " default 0";
    if (std::find(table.key.begin(), table.key.end(), column.name) != table.key.end()) text += " not null";
    separator = ",\n  ";
  }
  if (!table.key.empty()) text += ",\n  primary key (" + Joined(table.key, ", ") + ")";
  return text + "\n)" + tableOptions;
}

std::vector<std::string> Dialect::CreateIndexes(const LocalTable& table) const {
  if (table.indexed.empty()) return {};
  return {"create index if not exists " + IndexName(table) + " on " + table.name + " (" + Joined(table.indexed, ", ") +
          ")"};
}

std::string Dialect::CountIndexes(const LocalTable& table) const {
  if (table.indexed.empty()) return "";
  std::string query = countsIndex;
  return query.replace(query.find('#'), 1, IndexName(table));
}

const Dialect& SqliteDialect() { return kSqlite; }

const Dialect* DialectOfSystem(std::string_view system) {
  if (SameName(system, "SQLite")) return &kSqlite;
  if (SameName(system, "PostgreSQL")) return &kPostgresql;
  if (SameName(system, "MariaDB") || SameName(system, "MySQL")) return &kMariadb;
  return nullptr;
}

}  // namespace qmx
