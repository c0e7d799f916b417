// What a call of the product raised.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "platform/error.h"

namespace qmx::fuzz {

// Returns the error that the work raises; nothing if it raises none. Another exception is not caught.
template <typename Work>
std::optional<Error> Raised(Work&& work) {
  try {
    std::forward<Work>(work)();
  } catch (const Error& error) {
    return error;
  }
  return std::nullopt;
}

// The number of that error; 0 for none.
template <typename Work>
std::int32_t NumberRaised(Work&& work) {
  const std::optional<Error> error = Raised(std::forward<Work>(work));
  return error ? error->Number() : 0;
}

}  // namespace qmx::fuzz
