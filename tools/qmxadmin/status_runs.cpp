#include "tools/qmxadmin/status_runs.h"

#include <fmt/format.h>

#include "platform/run_records/record_fields.h"
#include "platform/system/descriptors.h"
#include "platform/system/paths.h"
#include "tools/qmxadmin/running_copies.h"
#include "tools/qmxadmin/runs/age.h"
#include "tools/qmxadmin/runs/spark_line.h"
#include "tools/qmxadmin/terminal.h"

namespace qmx {
namespace {

constexpr std::size_t kBars = 20;

Variant OrNull(const std::string& text) { return text.empty() ? Variant::Null() : Variant(text); }

std::string Bars(const TableRuns& table) {
  std::vector<double> durations;
  for (const Run* run : table.runs) {
    if (run->end && run->end->outcome != run_records::kRefused)
      durations.push_back(static_cast<double>(run->end->duration.count()));
  }
  if (durations.size() > kBars) durations.erase(durations.begin(), durations.end() - kBars);
  return SparkLine(durations);
}

std::string HolderText(const Run& run) {
  return fmt::format("process {} on {}, user {}, since {}", run.process.value_or(0), run.host, run.user,
                     LocalText(run.started));
}

// Whether no process copies the table. A process on another host may.
bool IsGone(const std::string& table, const TableRuns& runs) {
  if (!runs.holder) return runs.last || RunningCopiesOf(table).empty();  // a run of this folder would be recorded
  const RunState state = StateOf(*runs.holder);
  return state == RunState::ProcessGone || state == RunState::HostRebooted;
}

std::chrono::seconds Age(RunMoment from, RunMoment to) { return std::chrono::floor<std::chrono::seconds>(to - from); }

}  // namespace

StatusRuns::StatusRuns(const std::string& logFolder)
    : isKnown_(!logFolder.empty()),
      now_(std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now())) {
  if (isKnown_) runs_ = ReadRuns(NativePath(logFolder));
  byTable_ = RunsByTable(runs_);
}

const TableRuns& StatusRuns::RunsOf(const std::string& table) const {
  static const TableRuns kNone;
  const auto found = byTable_.find(table);
  return found == byTable_.end() ? kNone : found->second;
}

void StatusRuns::AddColumns(Listing& listing) const {
  if (!isKnown_) return;
  const bool drawsBars = TerminalOf(kStandardOutput).width.has_value();
  const std::vector<ListingColumn> columns = {
      {.key = "last_run", .title = "LAST RUN"},
      {.key = "last_run_started", .title = ""},
      {.key = "last_run_age", .title = "AGE", .toTheRight = true},
      {.key = "last_run_took", .title = "TOOK", .toTheRight = true},
      {.key = "last_run_duration_ms", .title = ""},
      {.key = "last_run_rows", .title = "WRITTEN", .prose = true},
      {.key = "last_run_mode", .title = "MODE", .shownEmpty = false},
      {.key = "durations", .title = drawsBars ? "LAST 20" : ""},
      {.key = "held_by", .title = "HELD BY", .prose = true, .shownEmpty = false}};
  listing.columns.insert(listing.columns.end(), columns.begin(), columns.end());
}

void StatusRuns::AddValues(const std::string& table, std::vector<Variant>& row) const {
  if (!isKnown_) return;
  const TableRuns& runs = RunsOf(table);
  const Run* const last = runs.last;
  const bool ended = last && last->end;
  row.push_back(last ? Variant(StateText(*last)) : Variant::Null());
  row.push_back(last ? Variant(LocalText(last->started)) : Variant::Null());
  row.push_back(last ? Variant(AgeText(Age(last->started, now_))) : Variant::Null());
  row.push_back(ended ? Variant(DurationText(last->end->duration)) : Variant::Null());
  row.push_back(ended ? Variant(static_cast<double>(last->end->duration.count())) : Variant::Null());
  row.push_back(last ? OrNull(last->Rows()) : Variant::Null());
  row.push_back(last ? OrNull(last->ShownMode()) : Variant::Null());
  row.push_back(OrNull(Bars(runs)));
  row.push_back(runs.holder ? Variant(HolderText(*runs.holder)) : Variant::Null());
}

std::vector<std::string> StatusRuns::Problems(const std::string& table, const ControlRecord* record,
                                              std::optional<std::chrono::seconds> maxAge) const {
  std::vector<std::string> problems;
  const TableRuns& runs = RunsOf(table);
  if (!record && runs.lastSuccess) problems.emplace_back("no record, though it was copied");
  if (record && record->inProgress && isKnown_ && IsGone(table, runs))
    problems.emplace_back("in use, but its run is gone: qmxadmin release " + table);
  if (runs.last && IsFailure(*runs.last)) {
    const std::string reason = runs.last->Reason();
    problems.push_back("last run: " + StateText(*runs.last) + (reason.empty() ? "" : ", " + reason));
  }
  if (!maxAge || !record) return problems;
  const auto lutm = record->lastUpdate ? MomentOfLocalTime(record->lastUpdate->ToText()) : std::nullopt;
  if (!lutm) {
    problems.emplace_back("no last update time");
  } else if (Age(*lutm, now_) > *maxAge) {
    problems.push_back("last update " + AgeText(Age(*lutm, now_)) + " ago");
  }
  return problems;
}

}  // namespace qmx
