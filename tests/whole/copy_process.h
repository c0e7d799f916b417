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
  CopyProcesses(const Company& company, const LocalCopy& local)
      : CopyProcesses(company, local.ConnectionText(), "local") {}
  CopyProcesses(const Company& company, std::string connectionText, std::string database)
      : company_(company), connection_(std::move(connectionText) + "," + std::move(database)) {
    std::filesystem::create_directory(folder_ / "log");
  }

  void Environment(const std::string& name, std::string value) { environment_[name] = std::move(value); }

  std::unique_ptr<RunningProcess> Start(const std::string& table) const {
    return std::make_unique<RunningProcess>(QMXDATACOPY, std::vector{CommandLine(table)}, environment_, folder_.Path());
  }
  Process Run(const std::string& table) const {
    return test::Run(QMXDATACOPY, {CommandLine(table)}, environment_, folder_.Path());
  }
  std::string CommandLine(const std::string& table) const {
    return connection_ + "," + table + "," + folder_ / "log" + "," + company_.Component() + ",17";
  }
  const std::filesystem::path& Folder() const {
    return folder_.Path();
  }  // into which alone a run writes, but for the database
  std::string Log(const std::string& table) const { return File(table + ".log"); }
  std::string File(const std::string& name) const { return ReadFile(folder_ / ("log/" + name)); }  // beside the logs
  std::string Board() const { return ReadFile(folder_ / "board"); }  // the messages to the scheduling server

 private:
  const Company& company_;
  std::string connection_;
  TempFolder folder_;
  std::map<std::string, std::string> environment_ = {{"QMX_COMPONENTS", SANDBOX_COMPONENTS},
                                                     {"QMX_MESSAGE_BOARD", folder_ / "board"},
                                                     {"QMX_TRACE", ""},
                                                     {"LC_ALL", "C"}};
};

// Polls until the condition holds. Raises std::runtime_error if it does not within a minute.
template <typename Condition>
void WaitUntil(const std::string& what, Condition&& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) throw std::runtime_error("waited in vain until " + what);
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
}

}  // namespace qmx::test
