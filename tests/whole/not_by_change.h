// What changed copies do not bring, of rows that they do bring: the list that docs/changed-copies.md gives to
// operators.
#pragma once

#include <string>

#include "tests/whole/local_copy.h"

namespace qmx::test {

enum class Fate {
  Emptied,  // not requested from the audit reader, so its getter returns the ERP's blank value
  Left,     // not written, unless the record is listed again
};

struct ColumnNotByChange {
  const char* table;
  const char* column;
  Fate fate;
  const char* blank = "";  // the sandbox ERP's blank value, if it is emptied
};

inline constexpr ColumnNotByChange kColumnsNotByChange[] = {
    {"tscfg220", "tecr", Fate::Emptied, ""},
    {"tssoc200", "minu", Fate::Emptied, "0"},
    {"tssoc200", "stna", Fate::Left},
};

// Fills in what the rows of a table need not hold after changed copies, so that all else can be compared.
inline void ExcuseColumnsNotByChange(const std::string& table, Rows& rows, const Rows& expected) {
  for (const ColumnNotByChange& known : kColumnsNotByChange) {
    if (table != known.table) continue;
    for (auto& [key, row] : rows) {
      const auto right = expected.find(key);
      if (right == expected.end()) continue;
      std::string& value = row.at(known.column);
      if (known.fate == Fate::Left || value == known.blank) value = right->second.at(known.column);
    }
  }
}

}  // namespace qmx::test
