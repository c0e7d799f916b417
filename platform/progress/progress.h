// Shows the progress of a running copy.
//
// - If standard error is a terminal: one line, redrawn in place at most ten times a second, with the table, the rows
//   saved so far, the rows per second and the time since the start. It appears when a run takes longer than a moment,
//   and is cleared before the program writes anything else there. A process in the background draws nothing, and no
//   process draws on a terminal whose $TERM is "dumb" or not set.
// - If $QMX_PROGRESS_FD is the number of an open descriptor: it gets lines "rows N" when the number has changed, at
//   most four a second, and a last one at the end. While the rows of the former copy are deleted, the line is
//   "deleting" (on the terminal too). The descriptor is for the process that started this one, and is not inherited
//   further. A reader that does not keep up misses lines, and costs no time. main writes the last line, "end STATUS".
//   If it is missing, a component ended the process by exit, or the process crashed.
//
// A helper thread draws and writes. The copy only adds to a counter. Without a terminal and a descriptor nothing of
// this exists.
#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "platform/failure_report.h"
#include "platform/progress/row_counter.h"
#include "platform/progress/row_rate.h"
#include "platform/steady_clock.h"

namespace qmx {

class Progress {
 public:
  static constexpr int kNobody = -1;

  // Null when progress is not shown.
  static std::unique_ptr<Progress> FromEnvironment(const std::string& table);

  // Returns the descriptor that $QMX_PROGRESS_FD names, and stops child processes from inheriting it; kNobody if it is
  // not open.
  static int ListenerFromEnvironment();

  // Writes the last line, "end STATUS". Waits at most a few seconds for a reader that does not keep up.
  static void TellEnd(int listener, int status);

  // Descriptors, or kNobody. The clock is borrowed.
  Progress(std::string table, int terminal, int listener, SteadyClock& clock = SteadyClock::OfTheSystem());
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  DatabaseObserver& Counter() { return counter_; }  // of the rows

  void End() noexcept;  // clears the line for good and writes the last count

 private:
  void ShowUntilTheEnd();
  bool EndsBefore(SteadyClock::TimePoint due, SteadyClock::Lock& lock);
  void Draw();
  std::string ClearText(int terminalWidth) const;
  void Tell();

  std::string table_;
  int terminal_;
  int listener_;
  SteadyClock& clock_;
  std::atomic<std::int64_t> rows_ = 0;
  RowCounter counter_{table_, rows_};
  RowRate rate_;
  SteadyClock::TimePoint start_ = clock_.Now();
  std::string drawn_;  // the line on the terminal, or empty
  int drawnWidth_ = 0;
  std::int64_t told_ = -1;

  std::mutex mutex_;
  std::condition_variable ended_;
  bool ends_ = false;
  std::thread helper_;
};

// Clears the terminal's line before it reports a failure.
class ReportAfterProgress : public FailureReport {
 public:
  ReportAfterProgress(FailureReport& inner, Progress* progress) : inner_(inner), progress_(progress) {}  // borrowed
  void Report(const Error& error) noexcept override {
    if (progress_) progress_->End();
    inner_.Report(error);
  }

 private:
  FailureReport& inner_;
  Progress* progress_;
};

}  // namespace qmx
