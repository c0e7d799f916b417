// Names of columns, tables, keywords, members and ProgIDs compare without regard to the case of the letters A to Z.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace qmx {

constexpr char FoldLetter(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

inline bool SameName(std::string_view one, std::string_view other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](char a, char b) { return FoldLetter(a) == FoldLetter(b); });
}

// Returns the form that all spellings of a name share, for look-ups.
inline std::string FoldName(std::string_view name) {
  std::string folded(name);
  std::transform(folded.begin(), folded.end(), folded.begin(), FoldLetter);
  return folded;
}

}  // namespace qmx
