// A run that is stopped again and again, so that what others see of it is looked at within its work.
#pragma once

#include <algorithm>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include "tests/whole/copy_process.h"

namespace qmx::test {

inline bool IsABeginning(const std::vector<std::string>& rows, const std::vector<std::string>& all) {
  return rows.size() <= all.size() && std::equal(rows.begin(), rows.end(), all.begin());
}

// Returns when it stands still, or has ended.
inline void StopForALook(RunningProcess& run) {
  run.Signal(SIGSTOP);
  const std::string status = "/proc/" + std::to_string(run.Number()) + "/status";
  WaitUntil("the run stands still",
            [&] { return run.HasEnded() || ReadFile(status).find("State:\tT") != std::string::npos; });
}

// Lets the run go on for a moment at a time, and looks in between while it stands still, also within a transaction.
template <typename Look>
void Watch(RunningProcess& run, Look&& look) {
  while (!run.HasEnded()) {
    StopForALook(run);
    look();
    if (run.HasEnded()) return;
    run.Signal(SIGCONT);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

// Starts a run and stops it within its work: `hasBegun`, and not yet `isOver`. A run that is over before it could be
// stopped, as on a busy machine, is repeated; so `start` also makes what a run finds.
template <typename Start, typename HasBegun, typename IsOver>
std::unique_ptr<RunningProcess> StoppedWithin(Start&& start, HasBegun&& hasBegun, IsOver&& isOver) {
  for (int attempt = 0; attempt < 20; ++attempt) {
    std::unique_ptr<RunningProcess> run = start();
    WaitUntil("the run has begun", [&] { return run->HasEnded() || hasBegun(); });
    if (!run->HasEnded()) {
      StopForALook(*run);
      if (!run->HasEnded() && !isOver()) return run;
      if (!run->HasEnded()) run->Signal(SIGCONT);
    }
    run->Wait();
  }
  throw std::runtime_error("no run could be stopped within its work");
}

}  // namespace qmx::test
