// Receives the results of checks.
#pragma once

#include <string>

namespace qmx {

class Error;

struct Finding {
  enum class State { Good, Wrong, NotChecked };

  State state = State::Good;
  std::string what;      // what was checked
  std::string detail;    // the result
  std::string whatToDo;  // empty if nothing needs to be done
};

class FindingSink {
 public:
  virtual ~FindingSink() = default;
  virtual void Add(const Finding& finding) = 0;

  void Good(const std::string& what, const std::string& detail);
  void Wrong(const std::string& what, const std::string& detail, const std::string& whatToDo);
  void Wrong(const std::string& what, const Error& error, const std::string& whatToDo);
  void NotChecked(const std::string& what, const std::string& why);
};

}  // namespace qmx
