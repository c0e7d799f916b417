#include "tests/component_faults/ways.h"

namespace qmx::test {

const std::vector<Way>& Ways() {
  static const std::vector<Way> ways = {{"the C interface", OverTheCInterface}};
  return ways;
}

}  // namespace qmx::test
