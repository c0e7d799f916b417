// Where the whole chain of a failure is told, once the logs have had the texts that they are defined to show.
#pragma once

#include "platform/error.h"

namespace qmx {

class FailureReport {
 public:
  virtual ~FailureReport() = default;
  virtual void Report(const Error& error) noexcept = 0;  // never fails: it is the last word
};

}  // namespace qmx
