// A process that looks like a copy of a table, and only waits.
#pragma once

#include <filesystem>
#include <string>
#include <thread>

#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {

class WaitingCopy {
 public:
  WaitingCopy(const std::string& connection, const std::string& table)
      : process_(Program(), {connection + ", , " + table + " , log, a, b", "-f", "/dev/null"}, {}, folder_.Path()) {
    const std::string own = "/proc/" + Number();
    while (ReadFile(own + "/cmdline").find(table) == std::string::npos || ReadFile(own + "/comm") != "qmxdatacopy\n") {
      std::this_thread::yield();
    }
  }

  std::string Number() const { return std::to_string(process_.Number()); }

 private:
  std::filesystem::path Program() const {
    std::filesystem::create_symlink("/usr/bin/tail", folder_ / "qmxdatacopy");
    return folder_ / "qmxdatacopy";
  }

  TempFolder folder_;
  RunningProcess process_;
};

}  // namespace qmx::test
