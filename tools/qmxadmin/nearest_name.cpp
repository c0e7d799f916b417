#include "tools/qmxadmin/nearest_name.h"

#include <algorithm>

namespace qmx {
namespace {

std::size_t Changes(std::string_view from, std::string_view to) {
  // changes[i][j] is the number of changes that make the first j characters of `to` from the first i of `from`.
  std::vector<std::vector<std::size_t>> changes(from.size() + 1, std::vector<std::size_t>(to.size() + 1));
  for (std::size_t i = 0; i <= from.size(); ++i) {
    for (std::size_t j = 0; j <= to.size(); ++j) {
      if (i == 0 || j == 0) {
        changes[i][j] = i + j;
        continue;
      }
      const std::size_t replaced = changes[i - 1][j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
      changes[i][j] = std::min({changes[i - 1][j] + 1, changes[i][j - 1] + 1, replaced});
      const bool isSwapped = i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1];
      if (isSwapped) changes[i][j] = std::min(changes[i][j], changes[i - 2][j - 2] + 1);
    }
  }
  return changes[from.size()][to.size()];
}

}  // namespace

std::string NearestName(std::string_view misspelt, const std::vector<std::string>& names) {
  constexpr std::size_t kLongestName = 40;  // a longer text is no name, and would take long to compare
  std::string nearest;
  std::size_t fewest = misspelt.size() / 3 + 1;  // as many changes or more make another name
  if (misspelt.empty() || misspelt.size() > kLongestName) return nearest;
  for (const std::string& name : names) {
    const std::size_t count = Changes(misspelt, name);
    if (count < std::min(fewest, name.size())) {
      fewest = count;
      nearest = name;
    }
  }
  return nearest;
}

}  // namespace qmx
