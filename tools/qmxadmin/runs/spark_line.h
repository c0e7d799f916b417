// Numbers as a row of bars, one character each.
#pragma once

#include <string>
#include <vector>

namespace qmx {

// From "▁" to "█", in proportion to the largest number.
std::string SparkLine(const std::vector<double>& numbers);

}  // namespace qmx
