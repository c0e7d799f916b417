// One run of qmxdatacopy, as its records in QMXRuns.jsonl describe it (docs/run-records.md).
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace qmx {

using RunMoment = std::chrono::sys_time<std::chrono::milliseconds>;

struct RunCause {
  std::optional<std::int64_t> number;
  std::string source;
  std::string description;
  std::vector<std::pair<std::string, std::string>> details;
};

struct RunEnd {
  RunMoment time;
  std::chrono::milliseconds duration{};
  std::string outcome;  // such as "complete"
  int status = 0;
  std::string method;  // "full", "changed", or empty
  std::optional<std::int64_t> inserted, updated, deleted;
  std::string lastUpdate;                     // the lutm that the run wrote, or empty
  std::vector<std::vector<RunCause>> causes;  // each the chain of one failure, the outermost first
};

// The end is missing if the run is still running or never ended. The start is missing if its file is gone.
struct Run {
  std::string number;
  std::string table;  // as it was given
  RunMoment started;  // if the start is missing, as the end tells it
  std::string host;   // empty if the start is missing, and so are the next ones
  std::string boot;
  std::string user;
  std::string version;
  std::optional<std::int64_t> process;
  std::optional<std::int64_t> startTicks;
  std::optional<std::int64_t> request;
  std::string mode;  // "whole", "rows", or empty
  std::optional<RunEnd> end;

  std::string TableCode() const;  // in small letters, without the key of a calendar
  std::string Rows() const;       // "7 added, 21 updated, 2 removed", or empty
  std::string Reason() const;     // the innermost description of the first failure, or empty
  std::string ShownMode() const;  // "whole", or empty for the usual mode
};

// What is known of a run.
enum class RunState {
  Complete,
  NotComplete,   // it ended in any other way, and its outcome says how
  Running,       // its process exists
  ProcessGone,   // its process does not exist any more
  HostRebooted,  // its host was booted since
  OtherHost      // it has no end, and its process is on a host that cannot be looked at
};

RunState StateOf(const Run& run);

// In words: the outcome of a run that ended, else what became of it.
std::string StateText(const Run& run);

// Whether the run needs attention: it failed, or it never ended. A refused run does not.
bool IsFailure(const Run& run);

// Local time, "2026-11-20 14:05:09".
std::string LocalText(RunMoment moment);

// "0.25 s", "12.3 s", "4:05 min", "2:10:00 h".
std::string DurationText(std::chrono::milliseconds duration);

// "5 min", "3 h", "12 days".
std::string AgeText(std::chrono::seconds age);

}  // namespace qmx
