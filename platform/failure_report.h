// Reports the whole chain of a failure, which the logs do not show.
#pragma once

#include "platform/error.h"

namespace qmx {

class FailureReport {
 public:
  virtual ~FailureReport() = default;
  virtual void Report(const Error& error) noexcept = 0;  // never fails
};

}  // namespace qmx
