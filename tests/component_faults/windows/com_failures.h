// The failures that only COM has: results of calls, descriptions of exceptions, and values of its own types.
#pragma once

#include <vector>

#include "tests/component_faults/windows/failing_dispatch.h"

namespace qmx::test {

const std::vector<ComFailure>& ComFailures();

// The first ones, with which a call fails. After the others it gives a value.
inline constexpr std::size_t kFailingResults = 20;

}  // namespace qmx::test
