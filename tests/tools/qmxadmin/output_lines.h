// Counts lines of a command's output.
#pragma once

#include <algorithm>
#include <string>

namespace qmx::test {

// Lines that begin with the text.
inline std::size_t Lines(const std::string& text, const std::string& beginning) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); at = std::min(text.find('\n', at), text.size() - 1) + 1)
    count += text.compare(at, beginning.size(), beginning) == 0;
  return count;
}

}  // namespace qmx::test
