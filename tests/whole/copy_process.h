// Runs of the program itself, as processes, that copy from a company into a local database.
#pragma once

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/support/process.h"
#include "tests/whole/company.h"
#include "tests/whole/local_copy.h"

namespace qmx::test {

class CopyProcesses {
 public:
  CopyProcesses(const Company& company, const LocalCopy& local) : company_(company), local_(local) {
    std::filesystem::create_directory(folder_ / "log");
  }

  std::unique_ptr<RunningProcess> Start(const std::string& table) const {
    return std::make_unique<RunningProcess>(QMXDATACOPY, std::vector{CommandLine(table)}, kEnvironment, folder_.Path());
  }
  Process Run(const std::string& table) const {
    return test::Run(QMXDATACOPY, {CommandLine(table)}, kEnvironment, folder_.Path());
  }
  std::string CommandLine(const std::string& table) const {
    return local_.ConnectionText() + ",local," + table + "," + folder_ / "log" + "," + company_.Component();
  }
  std::string Log(const std::string& table) const { return ReadFile(folder_ / ("log/" + table + ".log")); }

 private:
  inline static const std::map<std::string, std::string> kEnvironment = {
      {"QMX_COMPONENTS", SANDBOX_COMPONENTS}, {"QMX_TRACE", ""}, {"LC_ALL", "C"}};

  const Company& company_;
  const LocalCopy& local_;
  TempFolder folder_;
};

// Looks again and again until the condition holds; raises std::runtime_error where it does not within a minute.
template <typename Condition>
void WaitUntil(const std::string& what, Condition&& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) throw std::runtime_error("waited in vain until " + what);
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
}

}  // namespace qmx::test
