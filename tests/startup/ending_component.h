// The program with a component server that ends or halts the process at a chosen call (servers/ending.cpp).
#pragma once

#include "tests/startup/data_copy_process.h"

namespace qmx::test {

class EndingComponent : public DataCopyProcess {
 protected:
  EndingComponent() {
    environment_["QMX_COMPONENTS"] = ENDING_COMPONENTS;
    // The sanitizers would report a crash in the default action's place.
    environment_["ASAN_OPTIONS"] = "handle_segv=0:handle_sigbus=0:handle_sigfpe=0:handle_sigill=0:handle_abort=0";
  }

  void At(const std::string& member, int call, const std::string& what) {
    environment_["QMX_TEST_AT"] = member;
    environment_["QMX_TEST_CALL"] = std::to_string(call);
    environment_["QMX_TEST_DO"] = what;
  }
  Process CopyEndedAt(const std::string& member, int call, const std::string& what) {
    At(member, call, what);
    return Copy();
  }
};

}  // namespace qmx::test
