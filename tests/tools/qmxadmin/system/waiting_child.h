// A child process that waits until it may end. With "stay until " it ends at no other request.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/support/temp_folder.h"
#include "tools/qmxadmin/system/child_process.h"

namespace qmx::test {

class WaitingChild {
 public:
  explicit WaitingChild(const std::string& what = "wait for ") : what_(what) {
    while (child_.ReadProgress().empty() && !child_.HasEnded()) EndRequests().Wait({&child_}, kLong);
  }
  ~WaitingChild() { End(); }
  WaitingChild(const WaitingChild&) = delete;
  WaitingChild& operator=(const WaitingChild&) = delete;

  ChildProcess& Process() { return child_; }
  const std::string& Argument() const { return argument_; }

  void End() {
    WriteFile(folder_.Path() / "end", "");
    WaitForEnd();
  }
  void WaitForEnd() {
    while (!child_.HasEnded()) EndRequests().Wait({&child_}, kLong);
  }

 private:
  static constexpr std::chrono::seconds kLong{1};

  TempFolder folder_;
  std::string what_;
  std::string argument_ = what_ + (folder_.Path() / "end").string();
  ChildProcess child_{TEST_CHILD, argument_, {}};
};

}  // namespace qmx::test
