// How a test asks for faults of an ODBC driver; odbc_faults/driver.cpp makes them.
#pragma once

#include <string>

#include "platform/odbc/connection_string.h"

namespace qmx::test {

struct OdbcFault {
  std::string function;  // as driver.cpp names it
  int first = 1;         // the call that fails
  int count = 1;         // calls that fail; 0 for all that follow
  bool isDone = false;   // and its answer is lost
  std::string answer;    // SQLSTATE and native code

  std::string Text() const {  // as QMX_ODBC_FAULT has it
    return function + " " + std::to_string(first) + " " + std::to_string(count) + (isDone ? " after " : " before ") +
           answer;
  }
};

// The connection text with the faulty driver, named by its path, in place of the system's own.
inline std::string ThroughFaultyDriver(const std::string& connectionText, const std::string& system) {
  const std::string real = system == "PostgreSQL" ? "psqlodbcw" : system == "MariaDB" ? "libmaodbc" : "libsqlite3odbc";
  return WithOdbcKeyword(connectionText, "Driver", std::string(ODBC_FAULTS) + "/faulty_" + real + ".so");
}

}  // namespace qmx::test
