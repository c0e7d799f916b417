// ProgIDs and member names are compared without regard to ASCII case.
#pragma once

#include <algorithm>
#include <string_view>

namespace orvan {

inline bool SameName(std::string_view left, std::string_view right) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](char l, char r) { return lower(l) == lower(r); });
}

}  // namespace orvan
