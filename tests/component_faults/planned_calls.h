// Counts the calls of a component's members, and tells which one is to go wrong.
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace qmx::test {

// A call is named "listed.getServiceType", by the kind of its object and the member.
class PlannedCalls {
 public:
  // The one that goes wrong, counted from 1. None before this is called.
  void Strike(std::string call, int number) {
    struck_ = std::move(call);
    number_ = number;
  }

  // Counts a call. Returns whether it is the one.
  bool IsStruck(const std::string& call) {
    const int number = ++counts_[call];
    if (number == 1) made_.push_back(call);
    hasStruck_ = hasStruck_ || (call == struck_ && number == number_);
    return call == struck_ && number == number_;
  }

  const std::vector<std::string>& Made() const { return made_; }  // each once, in the order of the first calls
  int Count(const std::string& call) const { return counts_.contains(call) ? counts_.at(call) : 0; }
  bool HasStruck() const { return hasStruck_; }

 private:
  std::string struck_;
  int number_ = 0;
  bool hasStruck_ = false;
  std::vector<std::string> made_;
  std::map<std::string, int> counts_;
};

}  // namespace qmx::test
