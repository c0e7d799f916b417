// Lists in texts: "A, B, C".
#pragma once

#include <string>
#include <string_view>

namespace qmx {

// Appends one more item to a list. The first item has no separator before it.
inline void AppendItem(std::string& list, std::string_view separator, std::string_view item) {
  if (!list.empty()) list += separator;
  list += item;
}

// Joins what `text` returns for each item.
template <typename Items, typename Text>
std::string Joined(const Items& items, std::string_view separator, Text&& text) {
  std::string list;
  bool isFirst = true;
  for (const auto& item : items) {
    if (!isFirst) list += separator;
    list += text(item);
    isFirst = false;
  }
  return list;
}

template <typename Items>
std::string Joined(const Items& items, std::string_view separator) {
  return Joined(
      items, separator, [](const auto& item) -> const auto& { return item; });
}

}  // namespace qmx
