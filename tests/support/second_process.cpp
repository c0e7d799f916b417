#include "tests/support/second_process.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>
#include <thread>

#include "platform/error.h"

namespace qmx::test {
namespace {

constexpr const char* kWork = "QMX_TEST_WORK";
constexpr const char* kWords = "QMX_TEST_WORDS";

using Works = std::map<std::string, std::function<void(const SecondProcess::Words&)>>;

std::string Joined(const SecondProcess::Words& words) {
  std::string text;
  for (const std::string& word : words) text += word + "\n";
  return text;
}

SecondProcess::Words Split(const std::string& text) {
  SecondProcess::Words words;
  std::istringstream lines(text);
  for (std::string word; std::getline(lines, word);) words.push_back(word);
  return words;
}

// Does the work of a second process before its first test, and ends the process.
class DoesTheWork : public testing::Environment {
 public:
  explicit DoesTheWork(const Works& works) : works_(works) {}

  void SetUp() override {
    const char* const name = std::getenv(kWork);
    if (!name) return;
    const char* const words = std::getenv(kWords);
    int status = 0;
    try {
      works_.at(name)(Split(words ? words : ""));
    } catch (const Error& error) {
      std::fprintf(stderr, "%s\n", DescribeChain(error).c_str());
      status = 1;
    }
    std::fflush(nullptr);
    std::_Exit(status);
  }

 private:
  const Works& works_;
};

Works& AllWorks() {
  static Works works;
  static const auto* const environment = testing::AddGlobalTestEnvironment(new DoesTheWork(works));  // owned there
  static_cast<void>(environment);
  return works;
}

}  // namespace

SecondProcess::Work::Work(const std::string& name, std::function<void(const Words&)> work) {
  AllWorks().emplace(name, std::move(work));
}

SecondProcess::SecondProcess(const std::string& work, const Words& words)
    : RunningProcess(OwnProgram().string(), {"--gtest_filter=*"}, {{kWork, work}, {kWords, Joined(words)}}) {}

void AwaitFile(const std::filesystem::path& file) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (!std::filesystem::exists(file)) {
    if (std::chrono::steady_clock::now() > end)
      throw Error(errors::kFileNotFound, "Test", file.string() + " did not come.");
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

}  // namespace qmx::test
