// A small sandbox ERP, made once, and the environment in which its component servers are found.
#pragma once

#include <stdexcept>
#include <string>

#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {

inline const std::string& SandboxErpFile() {
  static const TempFolder folder;
  static const std::string file = [] {
    const Process made = test::Run(ORVAN_SANDBOX, {"make", folder / "orvan.db", "--seed", "1", "--employees", "5",
                                                   "--orders", "10", "--service-types", "3"});
    if (made.status != 0) throw std::runtime_error("no sandbox ERP: " + made.err);
    return folder / "orvan.db";
  }();
  return file;
}

}  // namespace qmx::test
