#include "erp/schema.h"

#include "erp/sqlite.h"

namespace orvan {
namespace {

// The ERP has no null but the missing moment: a missing text is blank, a missing number 0.
std::string Definition(const Column& column) {
  switch (column.type) {
    case ColumnType::Text:
    case ColumnType::Day:
      return Quoted(column.name) + " TEXT NOT NULL DEFAULT ''";
    case ColumnType::Whole:
      return Quoted(column.name) + " INTEGER NOT NULL DEFAULT 0";
    case ColumnType::Number:
      return Quoted(column.name) + " REAL NOT NULL DEFAULT 0";
    case ColumnType::Moment:
      break;
  }
  return Quoted(column.name) + " TEXT";
}

std::string Enter(const Table& table, char change, const std::string& row) {
  return "INSERT INTO " + AuditTable(table) + " (at, change, " + ColumnList(table.key) +
         ") SELECT coalesce((SELECT now FROM sandbox_clock), datetime('now', 'localtime')), '" + change + "', " +
         ColumnList(table.key, row);
}

}  // namespace

std::string ColumnList(const std::vector<std::string_view>& names, const std::string& prefix) {
  std::string list;
  for (const std::string_view name : names) list += (list.empty() ? "" : ", ") + prefix + Quoted(name);
  return list;
}

std::string AuditTable(const Table& table) { return "audit_" + std::string(table.code); }

std::string CreateTableSql(const Table& table) {
  std::string sql = "CREATE TABLE " + std::string(table.code) + " (";
  for (const Column& column : table.columns) sql += Definition(column) + ", ";
  return sql + "PRIMARY KEY (" + ColumnList(table.key) + ")) WITHOUT ROWID;\n";
}

std::string CreateClockSql() { return "CREATE TABLE sandbox_clock (now TEXT);\n"; }

std::string CreateAuditSql(const Table& table) {
  const std::string code(table.code);
  const std::string trail = AuditTable(table);
  const std::string oldKey = "(" + ColumnList(table.key, "OLD.") + ")";
  const std::string newKey = "(" + ColumnList(table.key, "NEW.") + ")";

  std::string sql = "CREATE TABLE " + trail + " (entry INTEGER PRIMARY KEY AUTOINCREMENT, at TEXT NOT NULL, " +
                    "change TEXT NOT NULL, ";
  for (const std::string_view part : table.key) sql += Definition(table.At(part)) + ", ";
  sql.replace(sql.size() - 2, 2, ");\n");
  sql += "CREATE INDEX " + trail + "_at ON " + trail + " (at);\n";

  const auto trigger = [&](const std::string& name, const std::string& event, const std::string& body) {
    sql += "CREATE TRIGGER " + trail + "_" + name + " AFTER " + event + " BEGIN " + body + "; END;\n";
  };
  trigger("insert", "INSERT ON " + code, Enter(table, 'I', "NEW."));
  trigger("delete", "DELETE ON " + code, Enter(table, 'D', "OLD."));
  trigger("update", "UPDATE ON " + code + " WHEN " + oldKey + " = " + newKey, Enter(table, 'U', "NEW."));
  trigger("rekey", "UPDATE ON " + code + " WHEN " + oldKey + " <> " + newKey,
          Enter(table, 'D', "OLD.") + "; " + Enter(table, 'I', "NEW."));
  return sql;
}

}  // namespace orvan
