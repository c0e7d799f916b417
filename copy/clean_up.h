// What a routine does once it has failed, before it raises its own error.
//
// Every step is taken, whatever the others raise. What they raise becomes a cause of the routine's own error, behind
// the failure that led here. To be used in a handler only.
#pragma once

#include <utility>
#include <vector>

#include "platform/error.h"

namespace qmx {

class CleanUp {
 public:
  template <typename Step>
  void Take(Step&& step) {
    try {
      step();
    } catch (...) {
      failures_.push_back(CurrentError());
    }
  }

  [[noreturn]] void Raise(Error error) const {
    for (const Error& failure : failures_) error.AddCauses(failure);
    throw error;
  }

 private:
  std::vector<Error> failures_;
};

}  // namespace qmx
