// The clean-up of a failed routine, before it raises its own error. For handlers only.
//
// Takes every step, even when others raise. Their errors become causes of the routine's own error, after the failure
// that led here.
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
