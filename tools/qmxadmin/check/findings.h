// What a check found, a line each: told as they come, or as JSON at the end.
#pragma once

#include <string>

#include "tools/qmxadmin/listing.h"

namespace qmx {

class Error;

class Findings {
 public:
  explicit Findings(OutputForm form);

  void Good(const std::string& what, const std::string& told);
  void Wrong(const std::string& what, const std::string& told, const std::string& whatToDo);
  void Wrong(const std::string& what, const Error& error, const std::string& whatToDo);
  void NotLookedAt(const std::string& what, const std::string& why);

  bool AnyWrong() const { return anyWrong_; }
  void End();  // once

 private:
  enum class State { Good, Wrong, NotLookedAt };
  void Add(State state, const std::string& what, const std::string& told, const std::string& whatToDo);

  OutputForm form_;
  bool anyWrong_ = false;
  Listing listing_;
};

}  // namespace qmx
