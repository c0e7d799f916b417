#include "platform/batches/retries.h"

#include <algorithm>
#include <string>

#include "platform/interruption.h"

namespace qmx {
namespace {

std::string Times(int count) { return count == 1 ? "once" : std::to_string(count) + " times"; }

}  // namespace

void Retries::PauseAfter(const Error& error, Series& series) {
  const std::chrono::microseconds pause = Shortened(series.pause);
  const bool isLate = limit_.count() > 0 && clock_.Now() + pause >= series.begin + limit_;
  if (Interruption::IsRequested()) throw;
  if (isLate) {
    throw Error(errors::kTimeout, error.Source(),
                error.Description() + " It was tried again " + Times(series.retries) + " within " +
                    std::to_string(limit_.count()) + " seconds.");
  }
  clock_.Sleep(pause);
  series.pause = std::min(2 * series.pause, kLongestPause);
  ++series.retries;
  CountOne();
}

std::chrono::microseconds Retries::Shortened(std::chrono::microseconds pause) {
  const std::lock_guard guard(mutex_);
  return pause - std::chrono::microseconds(std::uniform_int_distribution<std::int64_t>(0, pause.count() / 2)(random_));
}

}  // namespace qmx
