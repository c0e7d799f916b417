#include "tools/qmxadmin/runs/spark_line.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace qmx {

std::string SparkLine(const std::vector<double>& numbers) {
  constexpr std::array<const char*, 8> kBars = {"▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
  const double largest = numbers.empty() ? 0 : *std::max_element(numbers.begin(), numbers.end());
  std::string line;
  for (const double number : numbers) {
    const double share = largest > 0 ? number / largest : 0;
    line += kBars[static_cast<std::size_t>(std::lround(share * (kBars.size() - 1)))];
  }
  return line;
}

}  // namespace qmx
