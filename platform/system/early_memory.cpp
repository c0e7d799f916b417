#include "platform/system/early_memory.h"

#include <exception>
#include <new>

#include "platform/system/end_at_once.h"
#include "platform/system/standard_error.h"

namespace qmx {
namespace {

constexpr int kFailed = 2;

std::terminate_handler before = nullptr;

void EndWithoutMemory() noexcept {
  try {
    if (std::current_exception()) throw;
  } catch (const std::bad_alloc&) {
    WriteToStandardError({"Out of memory: the program could not start.\n"});
    EndAtOnce(kFailed);
  } catch (...) {
  }
  before();
}

// Runs before any constant is constructed: 101 is the first priority that a program may use.
[[gnu::constructor(101)]] void CatchWhatNobodyCatches() noexcept { before = std::set_terminate(EndWithoutMemory); }

}  // namespace

void MainHasBegun() noexcept { std::set_terminate(before); }

}  // namespace qmx
