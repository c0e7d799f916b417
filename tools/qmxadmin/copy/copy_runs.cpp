#include "tools/qmxadmin/copy/copy_runs.h"

#include <fmt/format.h>

#include <chrono>
#include <list>
#include <sstream>

#include "platform/progress/progress_text.h"
#include "platform/progress/row_rate.h"
#include "tools/qmxadmin/copy/copy_process.h"
#include "tools/qmxadmin/copy/live_lines.h"
#include "tools/qmxadmin/copy/plan.h"
#include "tools/qmxadmin/system/end_requests.h"

namespace qmx {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kBetweenDrawings{125};

std::vector<std::string> TablesOf(const std::vector<CopyRun>& runs) {
  std::vector<std::string> tables;
  for (const CopyRun& run : runs) tables.push_back(run.table);
  return tables;
}

struct Running {
  Running(std::size_t runNumber, const CopyRun& run, const std::string& program, const RunOptions& options)
      : number(runNumber),
        log(options.logDirectory, CodeOf(run.table)),
        process(program, run.commandLine, options.mode) {}

  std::size_t number;
  CopyLog log;
  CopyProcess process;
  Clock::time_point start = Clock::now();
  RowRate rate = {};
};

std::string ResultOf(const CopyProcess& process, bool hasCounts) {
  if (const std::string killer = process.Killer(); !killer.empty()) return "ended by " + killer;
  if (process.WasInterrupted()) return "interrupted";
  switch (process.ExitStatus()) {
    case 0:
      return "copied";
    case 1:
      return "failed";
    case 3:
      return "refused, in progress";
    case 4:
      return "no such calendar kind";  // unknown tables are refused before
    case -1:
      return "ended halfway";
    default:
      return hasCounts ? "copied, then failed" : "could not start";
  }
}

class Runs {
 public:
  Runs(std::vector<CopyRun>& runs, const RunOptions& options)
      : runs_(runs), options_(options), lines_(options.quiet), plan_(TablesOf(runs)) {}

  void RunAll() {
    Start();
    while (!running_.empty()) {
      Wait();
      for (const EndRequest& request : requests_.Take()) Stop(request);
      for (auto running = running_.begin(); running != running_.end();) {
        running->process.Read();
        running = running->process.HasEnded() ? End(running) : std::next(running);
      }
      Start();
      Draw();
    }
    PrintCopiesThatWereNotRun();
  }

 private:
  void Start() {
    while (!isStopped_ && running_.size() < options_.atATime) {
      const std::optional<std::size_t> next = plan_.Next();
      if (!next) return;
      running_.emplace_back(*next, runs_[*next], program_, options_);
      if (!lines_.AreDrawn() && !options_.quiet) lines_.Print(fmt::format("{}: started", runs_[*next].table));
    }
  }

  void Wait() {
    std::vector<const ChildProcess*> children;
    for (const Running& running : running_) children.push_back(&running.process.Child());
    requests_.Wait(children, kBetweenDrawings);
  }

  void Stop(const EndRequest& request) {
    lines_.Print(fmt::format("{}: {}", request.name,
                             isStopped_ ? "the signal is passed on to the running copies again."
                                        : "no further copy is started. Running copies end at their next call to the "
                                          "ERP. A second signal ends them at once."));
    isStopped_ = true;
    for (const Running& running : running_) running.process.PassOn(request);
  }

  std::list<Running>::iterator End(std::list<Running>::iterator ended) {
    CopyRun& run = runs_[ended->number];
    const CopyProcess& process = ended->process;
    run.duration = std::chrono::round<std::chrono::milliseconds>(Clock::now() - ended->start);
    if (process.ExitStatus() >= 0) run.exitStatus = process.ExitStatus();
    run.counts = ended->log.NewCounts();
    run.result = ResultOf(process, run.counts.has_value());
    plan_.Ended(ended->number, run.exitStatus == 0);
    PrintEnd(run, process);
    return running_.erase(ended);
  }

  void PrintEnd(const CopyRun& run, const CopyProcess& process) {
    if (options_.quiet && run.exitStatus == 0) return;
    std::string line = fmt::format("{}: {}", run.table, run.result);
    if (run.counts) {
      line += fmt::format(", {} added, {} updated, {} removed", CountText(run.counts->added),
                          CountText(run.counts->updated), CountText(run.counts->removed));
    }
    lines_.Print(line);
    std::istringstream output(process.Output());
    for (std::string text; std::getline(output, text);) lines_.Print("  " + text);
    if (process.WasInterrupted()) lines_.Print("  The table is released, so the next copy can start.");
    if (process.ExitStatus() >= 0) return;
    const bool isKilled = !process.Killer().empty();
    if (!isKilled) lines_.Print("  Something other than qmxdatacopy itself ended the process.");
    lines_.Print(fmt::format("  The table {} in progress. \"qmxadmin release {}\" allows the next copy.",
                             isKilled ? "stays" : "may stay", CodeOf(run.table)));
  }

  void Draw() {
    if (!lines_.AreDrawn()) return;
    const auto now = Clock::now();
    std::vector<std::string> lines;
    for (Running& running : running_) {
      const std::string& table = runs_[running.number].table;
      const std::int64_t rows = running.process.Rows();
      const std::int64_t rate = running.rate.At(now, rows);
      const auto elapsed = std::chrono::duration_cast<std::chrono::seconds>(now - running.start);
      lines.push_back(running.process.IsDeleting() ? DeletingText(table, elapsed)
                                                   : ProgressText(table, rows, rate, elapsed));
    }
    lines_.Draw(lines);
  }

  void PrintCopiesThatWereNotRun() {
    std::vector<std::string> tables;
    for (const CopyRun& run : runs_) {
      if (!run.duration) tables.push_back(run.table);
    }
    if (tables.empty()) return;
    lines_.Print(fmt::format("Not run: {}{}", fmt::join(tables, ", "),
                             isStopped_ ? "." : ", because the service employees were not copied."));
  }

  std::vector<CopyRun>& runs_;
  const RunOptions& options_;
  std::string program_ = FindDataCopy();
  EndRequests requests_;
  LiveLines lines_;
  CopyPlan plan_;
  std::list<Running> running_;
  bool isStopped_ = false;
};

}  // namespace

void RunCopies(std::vector<CopyRun>& runs, const RunOptions& options) { Runs(runs, options).RunAll(); }

}  // namespace qmx
