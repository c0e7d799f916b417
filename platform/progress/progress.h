// How far a copy has come, told while it runs to whoever can see it.
//
// - Where standard error is a terminal: one line, drawn over itself at most ten times a second, with the table, the
//   rows saved so far, the rows per second and the time since the start. It appears when a run takes longer than a
//   moment, is gone before anything else of the program is written there, and leaves nothing behind. A process in the
//   background draws nothing, nor does anybody on a terminal whose $TERM is "dumb" or not set.
// - Where $QMX_PROGRESS_FD is the number of an open descriptor: lines "rows N" are written to it, as often as the
//   number has changed but four times a second at most, and a last one at the end. It is meant for the process that
//   started this one, and is not handed on further. A reader that does not keep up misses lines, and costs no time.
//   The last line is "end STATUS", written by main. A process whose last line is missing did not end by itself: a
//   component called exit, or it crashed.
//
// A helper thread does the drawing and the writing; the copy itself adds to a counter and nothing else. Where nobody
// looks, none of this exists.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "platform/failure_report.h"
#include "platform/progress/row_counter.h"
#include "platform/progress/row_rate.h"

namespace qmx {

class Progress {
 public:
  static constexpr int kNobody = -1;

  // Null where nobody looks.
  static std::unique_ptr<Progress> FromEnvironment(const std::string& table);

  // The descriptor that $QMX_PROGRESS_FD names, from now on this process's alone. kNobody where it is not open.
  static int ListenerFromEnvironment();

  // Writes "end STATUS", the last line. Waits a few seconds at most for a reader that does not keep up.
  static void TellEnd(int listener, int status);

  Progress(std::string table, int terminal, int listener);  // descriptors, or kNobody
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  DatabaseObserver& Counter() { return counter_; }  // of the rows

  void End() noexcept;  // the line is gone and stays so, the last count is told

 private:
  using Clock = std::chrono::steady_clock;
  void ShowUntilTheEnd();
  void Draw();
  void Tell();

  std::string table_;
  int terminal_;
  int listener_;
  std::atomic<std::int64_t> rows_ = 0;
  RowCounter counter_{table_, rows_};
  RowRate rate_;
  Clock::time_point start_ = Clock::now();
  bool isDrawn_ = false;
  std::int64_t told_ = -1;

  std::mutex mutex_;
  std::condition_variable ended_;
  bool ends_ = false;
  std::thread helper_;
};

// A failure report that finds the terminal's line cleared.
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
