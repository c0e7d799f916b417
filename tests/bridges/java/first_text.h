// What a local database holds after a run.
#pragma once

#include <sqlite3.h>

#include <string>

namespace qmx::test {

// Returns the first value that the statement gives, or "no row".
inline std::string FirstText(const std::string& file, const std::string& statement) {
  sqlite3* database = nullptr;
  sqlite3_stmt* prepared = nullptr;
  sqlite3_open(file.c_str(), &database);
  sqlite3_busy_timeout(database, 60000);
  sqlite3_prepare_v2(database, statement.c_str(), -1, &prepared, nullptr);
  const bool hasRow = sqlite3_step(prepared) == SQLITE_ROW;
  std::string text = hasRow ? reinterpret_cast<const char*>(sqlite3_column_text(prepared, 0)) : "no row";
  sqlite3_finalize(prepared);
  sqlite3_close(database);
  return text;
}

}  // namespace qmx::test
