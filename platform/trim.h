// Text without the blanks around it. Without `blanks` only the character blank counts as one, as around the pieces of
// the command line and table codes.
#pragma once

#include <string_view>

namespace qmx {

inline std::string_view Trimmed(std::string_view text, std::string_view blanks = " ") {
  const std::size_t first = text.find_first_not_of(blanks);
  return first == std::string_view::npos ? std::string_view()
                                         : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace qmx
