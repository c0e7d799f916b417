// Failures of COM calls as errors, both ways.
#pragma once

#include <oaidl.h>

#include <optional>
#include <string>

#include "platform/error.h"

namespace qmx {

// A component's description of a failure (EXCEPINFO). Frees its texts.
class Exception {
 public:
  Exception() = default;
  ~Exception();
  Exception(const Exception&) = delete;
  Exception& operator=(const Exception&) = delete;

  EXCEPINFO* Receiver() { return &info_; }

  // Returns the error that the component describes. `source` and standard texts replace missing ones. Flaws in its
  // texts become U+FFFD.
  Error ToError(const std::string& source);

 private:
  EXCEPINFO info_{};
};

// One call that failed.
struct FailedCall {
  HRESULT result;
  std::string member;
  std::size_t argumentCount = 0;
  std::optional<std::size_t> argument;  // the one that does not fit, from 1
};

// Returns the error for a result that no EXCEPINFO describes, with the detail "hresult".
Error ErrorOf(const FailedCall& call, const std::string& source);

// Returns the exception in flight as a component's failure: fills `info`, which may be null, and gives the result to
// return.
HRESULT FailWithCurrentError(EXCEPINFO* info) noexcept;

}  // namespace qmx
