// What stands in a sandbox file, for tests that compare or count.
#pragma once

#include <string>
#include <vector>

#include "sandbox/erp/schema.h"
#include "sandbox/erp/sqlite.h"

namespace orvan::test {

// The rows of a query, values between "|".
inline std::vector<std::string> Query(const std::string& path, const std::string& sql) {
  const auto database = Database::OpenToRead(path);
  Statement statement(database, sql);
  std::vector<std::string> rows;
  while (statement.Step()) {
    std::string row;
    for (int i = 0; i < statement.Columns(); ++i)
      row.append(i ? "|" : "").append(statement.At(i).Kind() == SQLITE_NULL ? "NULL" : statement.Text(i));
    rows.push_back(std::move(row));
  }
  return rows;
}

inline std::string One(const std::string& path, const std::string& sql) {
  const auto rows = Query(path, sql);
  return rows.size() == 1 ? rows[0] : std::to_string(rows.size()) + " rows";
}

// All of it, the audit trail included.
inline std::vector<std::string> Content(const std::string& path) {
  std::vector<std::string> content;
  for (const Table& table : AllTables()) {
    for (const std::string& name : {std::string(table.code), AuditTable(table)}) {
      content.push_back(name);
      for (std::string& row : Query(path, "SELECT * FROM " + name)) content.push_back(std::move(row));
    }
  }
  return content;
}

}  // namespace orvan::test
