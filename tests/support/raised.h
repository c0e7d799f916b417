// The error that a piece of work raises, so that a test reads it as a value.
#pragma once

#include <gtest/gtest.h>

#include <optional>

#include "platform/error.h"

namespace qmx::test {

// Fails the test and gives error 0 when nothing is raised.
template <typename Work>
Error Raised(Work&& work) {
  std::optional<Error> raised;
  try {
    work();
  } catch (const Error& error) {
    raised = error;
  }
  if (raised) return *raised;
  ADD_FAILURE() << "no error was raised";
  return {0, "", ""};
}

}  // namespace qmx::test
