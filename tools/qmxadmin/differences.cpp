#include "tools/qmxadmin/differences.h"

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
      return "values of no certain type";
  }
}

std::string KeyText(std::vector<std::string> columns) {
  if (columns.empty()) return "no key";
  std::sort(columns.begin(), columns.end());
  std::string text;
  for (const std::string& column : columns) text += (text.empty() ? "the key " : ", ") + FoldName(column);
  return text;
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
      differences.push_back("the column " + column.name + " is missing");
    } else if (there->type != column.type) {
      differences.push_back("the column " + column.name + " holds " + KindName(there->type) + ", not " +
                            KindName(column.type));
    }
  }
  for (const ColumnDescription& column : found.columns) {
    if (FindColumn(wanted.columns, column.name) == wanted.columns.end()) {
      differences.push_back("the column " + column.name + " is one more");
    }
  }
  std::vector<std::string> key;
  for (const std::size_t column : found.key) key.push_back(found.columns[column].name);
  if (KeyText(key) != KeyText(wanted.key)) {
    differences.push_back("it has " + KeyText(key) + ", not " + KeyText(wanted.key));
  }
  return differences;
}

}  // namespace qmx
