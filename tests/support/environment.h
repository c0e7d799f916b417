// An environment variable set, or with null unset, for the length of a scope.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace qmx::test {

class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const char* value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    Set(value);
  }
  ~EnvironmentVariable() { Set(before_ ? before_->c_str() : nullptr); }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

 private:
  void Set(const char* value);

  const char* name_;
  std::optional<std::string> before_;
};

// For programs over a server: their own look for leaks crashes in the threads of PostgreSQL's driver, and gets lost in
// any driver that has lost its server.
struct WithoutLeakCheck : EnvironmentVariable {
  WithoutLeakCheck() : EnvironmentVariable("ASAN_OPTIONS", "detect_leaks=0") {}
};

}  // namespace qmx::test
