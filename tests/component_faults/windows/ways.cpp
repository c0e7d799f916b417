#include "tests/component_faults/ways.h"

#include "tests/component_faults/windows/over_com.h"

namespace qmx::test {

const std::vector<Way>& Ways() {
  static const std::vector<Way> ways = {{"the C interface", OverTheCInterface}, {"COM", OverCom}};
  return ways;
}

}  // namespace qmx::test
