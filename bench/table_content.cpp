// table_content FILE TABLE: prints the number of rows of an SQLite table and the sum of the hashes of their values and
// types. Tables with the same rows, in any order, print the same line.
#include <cstdint>
#include <functional>
#include <iostream>

#include "bench/reference/sqlite.h"

namespace {

using reference::Statement;

std::size_t HashOf(sqlite3_stmt* row, int column) {
  switch (sqlite3_column_type(row, column)) {
    case SQLITE_NULL:
      return 1;
    case SQLITE_INTEGER:
      return static_cast<std::size_t>(sqlite3_column_int64(row, column)) * 31 + 2;
    case SQLITE_FLOAT:
      return std::hash<double>()(sqlite3_column_double(row, column)) + 3;
    default: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
      const auto size = static_cast<std::size_t>(sqlite3_column_bytes(row, column));
      return std::hash<std::string_view>()({text, size});
    }
  }
}

std::size_t HashOf(sqlite3_stmt* row) {
  std::size_t hash = 0;
  for (int column = 0; column < sqlite3_column_count(row); ++column) {
    hash = (hash ^ HashOf(row, column)) * 0x9E3779B97F4A7C15U;
    hash ^= hash >> 32;
  }
  return hash;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc != 3) throw std::runtime_error("usage: table_content FILE TABLE");
    const reference::File file(argv[1], SQLITE_OPEN_READONLY);
    Statement rows = file.Prepare("select * from " + std::string(argv[2]));
    std::int64_t count = 0;
    std::size_t sum = 0;
    for (; rows.Step(); ++count) sum += HashOf(rows.Get());
    std::cout << count << " rows, " << std::hex << sum << '\n';
  } catch (const std::exception& failure) {
    std::cerr << "table_content: " << failure.what() << '\n';
    return 1;
  }
}
