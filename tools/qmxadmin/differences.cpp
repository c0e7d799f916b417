#include "tools/qmxadmin/differences.h"

#include <fmt/format.h>

#include <algorithm>

#include "platform/names.h"

namespace qmx {
namespace {

std::string KindName(Variant::Kind kind) {
  switch (kind) {
    case Variant::Kind::Boolean:
      return "booleans";
    case Variant::Kind::UInt8:
      return "8-bit integers";
    case Variant::Kind::Int16:
      return "16-bit integers";
    case Variant::Kind::Int32:
      return "32-bit integers";
    case Variant::Kind::Double:
      return "numbers";
    case Variant::Kind::DateTime:
      return "date-times";
    case Variant::Kind::Text:
      return "texts";
    default:
      return "values of any type";
  }
}

std::string KeyText(std::vector<std::string> columns) {
  if (columns.empty()) return "no key";
  for (std::string& column : columns) column = FoldName(column);
  std::sort(columns.begin(), columns.end());
  return fmt::format("the key {}", fmt::join(columns, ", "));
}

template <typename Columns>
auto FindColumn(const Columns& columns, const std::string& name) {
  return std::find_if(columns.begin(), columns.end(), [&](const auto& column) { return SameName(column.name, name); });
}

}  // namespace

std::vector<std::string> Differences(const LocalTable& wanted, const TableDescription& found) {
  std::vector<std::string> differences;
  for (const LocalColumn& column : wanted.columns) {
    const auto there = FindColumn(found.columns, column.name);
    if (there == found.columns.end()) {
      differences.push_back(fmt::format("the column {} is missing", column.name));
    } else if (there->type != column.type) {
      differences.push_back(
          fmt::format("the column {} holds {}, not {}", column.name, KindName(there->type), KindName(column.type)));
    }
  }
  for (const ColumnDescription& column : found.columns) {
    if (FindColumn(wanted.columns, column.name) == wanted.columns.end()) {
      differences.push_back(fmt::format("the column {} is not expected", column.name));
    }
  }
  std::vector<std::string> key;
  for (const std::size_t column : found.key) key.push_back(found.columns[column].name);
  if (KeyText(key) != KeyText(wanted.key)) {
    differences.push_back(fmt::format("it has {}, not {}", KeyText(key), KeyText(wanted.key)));
  }
  return differences;
}

}  // namespace qmx
