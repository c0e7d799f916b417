// The name that a misspelt one probably means.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qmx {

// Returns the name that takes the fewest changes of single characters to make, or an empty text if none is near. A
// change is a letter that is added, left out, replaced, or swapped with its neighbour.
std::string NearestName(std::string_view misspelt, const std::vector<std::string>& names);

}  // namespace qmx
