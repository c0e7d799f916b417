// Blanks around a text: the character blank alone, as pieces of the command line and table codes are trimmed.
#pragma once

#include <string_view>

namespace qmx {

inline std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string_view()
                                         : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace qmx
