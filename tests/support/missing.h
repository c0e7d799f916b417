// For tests that need something which not every machine has. In CI all of it must be there.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace qmx::test {

// Skips the running test, which then returns. Fails it if CI=true.
inline void Missing(const std::string& what) {
  const char* const ci = std::getenv("CI");
  if (ci && std::string(ci) == "true") {
    ADD_FAILURE() << "In CI this must be there. " << what;
  } else {
    GTEST_SKIP() << what;
  }
}

}  // namespace qmx::test
