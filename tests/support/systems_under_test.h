// The database systems that tests of whole programs go over: one driver for each.
#pragma once

#include <string>
#include <vector>

#include "tests/support/driver_under_test.h"

namespace qmx::test {

inline std::vector<DriverUnderTest> OnlySqlite() {
  return DriversUnderTest([](const DriverUnderTest& driver) { return driver.name == "SQLite"; });
}

// A process is the same over SQLite whether the test's own rows go there in batches, or through ODBC.
inline std::vector<DriverUnderTest> SystemsUnderTest() {
  std::vector<DriverUnderTest> systems = OnlySqlite();
  for (DriverUnderTest& server : ServersUnderTest()) systems.push_back(std::move(server));
  return systems;
}

}  // namespace qmx::test
