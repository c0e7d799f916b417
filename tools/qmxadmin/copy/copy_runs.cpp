#include "tools/qmxadmin/copy/copy_runs.h"

#include <poll.h>

#include <chrono>
#include <cmath>
#include <cstring>
#include <list>
#include <sstream>

#include "platform/progress/progress_text.h"
#include "platform/progress/row_rate.h"
#include "tools/qmxadmin/copy/copy_process.h"
#include "tools/qmxadmin/copy/live_lines.h"
#include "tools/qmxadmin/copy/plan.h"
#include "tools/qmxadmin/copy/signals.h"

namespace qmx {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kBetweenDrawings = 125;  // milliseconds

std::vector<std::string> TablesOf(const std::vector<CopyRun>& runs) {
  std::vector<std::string> tables;
  for (const CopyRun& run : runs) tables.push_back(run.table);
  return tables;
}

struct Running {
  Running(std::size_t runNumber, const CopyRun& run, const std::string& program, const std::string& logDirectory)
      : number(runNumber), log(logDirectory, CodeOf(run.table)), process(program, run.commandLine) {}

  std::size_t number;
  CopyLog log;
  CopyProcess process;
  Clock::time_point start = Clock::now();
  RowRate rate = {};
};

std::string ResultOf(const CopyProcess& process, bool hasCounts) {
  if (const int signal = process.EndingSignal())
    return "ended by signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
  if (process.WasInterrupted()) return "interrupted";
  switch (process.ExitStatus()) {
    case 0:
      return "copied";
    case 1:
      return "failed";
    case 3:
      return "refused, in progress";
    case 4:
      return "no such calendar kind";  // unknown tables are never run
    case -1:
      return "ended halfway";
    default:
      return hasCounts ? "copied, then failed" : "could not start";
  }
}

class Runs {
 public:
  Runs(std::vector<CopyRun>& runs, std::string logDirectory, std::size_t atATime)
      : runs_(runs), logDirectory_(std::move(logDirectory)), atATime_(atATime), plan_(TablesOf(runs)) {}

  void ToTheEnd() {
    Start();
    while (!running_.empty()) {
      Wait();
      for (const int signal : signals_.Take()) {
        if (signal != SIGCHLD) Stop(signal);
      }
      for (auto running = running_.begin(); running != running_.end();) {
        running->process.Read();
        running = running->process.HasEnded() ? End(running) : std::next(running);
      }
      Start();
      Draw();
    }
    TellWhatWasNotRun();
  }

 private:
  void Start() {
    while (!isStopped_ && running_.size() < atATime_) {
      const std::optional<std::size_t> next = plan_.Next();
      if (!next) return;
      running_.emplace_back(*next, runs_[*next], program_, logDirectory_);
      if (!lines_.AreDrawn()) lines_.Say(runs_[*next].table + ": started");
    }
  }

  void Wait() {
    std::vector<pollfd> awaited = {{signals_.Descriptor(), POLLIN, 0}};
    for (const Running& running : running_) {
      for (const int descriptor : running.process.Descriptors()) awaited.push_back({descriptor, POLLIN, 0});
    }
    poll(awaited.data(), awaited.size(), kBetweenDrawings);
  }

  void Stop(int signal) {
    lines_.Say(std::string(strsignal(signal)) +
               (isStopped_ ? ": those that run are told again."
                           : ": no further copy is started, those that run end at their next call to the ERP. A second "
                             "signal ends them at once."));
    isStopped_ = true;
    for (const Running& running : running_) running.process.Signal(signal);
  }

  std::list<Running>::iterator End(std::list<Running>::iterator ended) {
    CopyRun& run = runs_[ended->number];
    const CopyProcess& process = ended->process;
    const std::chrono::duration<double> duration = Clock::now() - ended->start;
    run.seconds = std::round(duration.count() * 10) / 10;
    if (process.ExitStatus() >= 0) run.exitStatus = process.ExitStatus();
    run.counts = ended->log.NewCounts();
    run.result = ResultOf(process, run.counts.has_value());
    plan_.Ended(ended->number, run.exitStatus == 0);
    Tell(run, process);
    return running_.erase(ended);
  }

  void Tell(const CopyRun& run, const CopyProcess& process) {
    std::string line = run.table + ": " + run.result;
    if (run.counts) {
      line += ", " + CountText(run.counts->added) + " added, " + CountText(run.counts->updated) + " updated, " +
              CountText(run.counts->removed) + " removed";
    }
    lines_.Say(line);
    std::istringstream said(process.Said());
    for (std::string words; std::getline(said, words);) lines_.Say("  " + words);
    if (process.WasInterrupted()) lines_.Say("  The table is released: the next copy can start.");
    if (process.ExitStatus() >= 0) return;
    const bool isKilled = process.EndingSignal() != 0;
    if (!isKilled) lines_.Say("  Something other than qmxdatacopy itself ended the process.");
    lines_.Say("  The table " + std::string(isKilled ? "stays" : "may stay") + " in progress: \"qmxadmin release " +
               CodeOf(run.table) + "\" lets it be copied again.");
  }

  void Draw() {
    if (!lines_.AreDrawn()) return;
    const auto now = Clock::now();
    std::vector<std::string> lines;
    for (Running& running : running_) {
      const std::int64_t rows = running.process.Rows();
      lines.push_back(ProgressText(runs_[running.number].table, rows, running.rate.At(now, rows),
                                   std::chrono::duration_cast<std::chrono::seconds>(now - running.start)));
    }
    lines_.Draw(lines);
  }

  void TellWhatWasNotRun() {
    std::string names;
    for (const CopyRun& run : runs_) {
      if (!run.seconds) names += (names.empty() ? "" : ", ") + run.table;
    }
    if (!names.empty())
      lines_.Say("Not run: " + names + (isStopped_ ? "." : ", since the service employees were not copied."));
  }

  std::vector<CopyRun>& runs_;
  std::string logDirectory_;
  std::size_t atATime_;
  std::string program_ = FindDataCopy();
  Signals signals_;
  LiveLines lines_;
  CopyPlan plan_;
  std::list<Running> running_;
  bool isStopped_ = false;
};

}  // namespace

void RunCopies(std::vector<CopyRun>& runs, const std::string& logDirectory, std::size_t atATime) {
  Runs(runs, logDirectory, atATime).ToTheEnd();
}

}  // namespace qmx
