// The rows of a query as texts.
#pragma once

#include <string>
#include <vector>

#include "platform/database.h"

namespace qmx::test {

// Each row's first values joined by "|"; "null" for none.
inline std::vector<std::string> RowTexts(Connection& connection, const std::string& query, std::size_t columns) {
  Recordset records(nullptr);
  records.Open(query, connection, kCursorKeyset, kLockOptimistic, kCommandText);
  std::vector<std::string> rows;
  for (; !records.Eof(); records.MoveNext()) {
    std::string row;
    for (std::size_t column = 0; column < columns; ++column) {
      const Variant value = records.Fields(column).Value();
      row += (column > 0 ? "|" : "") + (value.IsNull() ? "null" : value.ToText());
    }
    rows.push_back(row);
  }
  return rows;
}

}  // namespace qmx::test
