#include "tools/qmxadmin/runs/run_metrics.h"

#include <fmt/format.h>

#include <map>

#include "tools/qmxadmin/runs/age.h"
#include "tools/qmxadmin/runs/run_history.h"

namespace qmx {
namespace {

double Seconds(std::chrono::milliseconds duration) { return static_cast<double>(duration.count()) / 1000; }

// A label's value: a backslash, a quote and a line end are written with a backslash.
std::string Label(const std::string& text) {
  std::string label;
  for (const char c : text) {
    if (c == '\\' || c == '"') label += '\\';
    label += c == '\n' ? "\\n" : std::string(1, c);
  }
  return label;
}

class Metric {
 public:
  Metric(const char* name, const char* help) : name_(name) {
    text_ = fmt::format("# HELP {} {}\n# TYPE {} gauge\n", name, help, name);
  }
  void Add(const std::string& table, double value) { AddLabelled(fmt::format("table=\"{}\"", Label(table)), value); }
  void Add(const std::string& table, const char* operation, double value) {
    AddLabelled(fmt::format("table=\"{}\",operation=\"{}\"", Label(table), operation), value);
  }
  // Empty if no table has a value.
  std::string Text() const { return isEmpty_ ? "" : text_; }

 private:
  void AddLabelled(const std::string& labels, double value) {
    text_ += fmt::format("{}{{{}}} {}\n", name_, labels, value);
    isEmpty_ = false;
  }

  std::string name_, text_;
  bool isEmpty_ = true;
};

struct Metrics {
  Metric success{"qmx_copy_last_success_timestamp_seconds", "End of the last complete copy, in seconds since 1970."};
  Metric started{"qmx_copy_last_run_timestamp_seconds", "Start of the last copy, in seconds since 1970."};
  Metric result{"qmx_copy_last_run_success", "Whether the last copy that is over was complete: 1, or 0."};
  Metric status{"qmx_copy_last_run_exit_status", "Exit status of the last copy that ended."};
  Metric duration{"qmx_copy_last_run_duration_seconds", "Duration of the last copy that ended."};
  Metric rows{"qmx_copy_last_run_rows", "Rows that the last copy that ended inserted, updated and deleted."};
  Metric progress{"qmx_copy_in_progress_seconds", "For how long the copy runs that has not ended, 0 if none."};
  Metric abandoned{"qmx_copy_abandoned", "Whether the last copy never ended and its process is gone: 1, or 0."};
  Metric lutm{"qmx_copy_lutm_age_seconds", "Age of the last update time that a copy wrote."};

  std::string Text() const {
    std::string text;
    for (const Metric* metric : {&success, &started, &result, &status, &duration, &rows, &progress, &abandoned, &lutm})
      text += metric->Text();
    return text;
  }
};

void AddEnd(Metrics& metrics, const std::string& table, const RunEnd& end) {
  metrics.status.Add(table, end.status);
  metrics.duration.Add(table, Seconds(end.duration));
  if (!end.inserted) return;
  metrics.rows.Add(table, "inserted", static_cast<double>(*end.inserted));
  metrics.rows.Add(table, "updated", static_cast<double>(end.updated.value_or(0)));
  metrics.rows.Add(table, "deleted", static_cast<double>(end.deleted.value_or(0)));
}

void AddTable(Metrics& metrics, const std::string& table, const TableRuns& runs, RunMoment now) {
  const RunState state = StateOf(*runs.last);
  const bool isAbandoned = state == RunState::ProcessGone || state == RunState::HostRebooted;
  const bool runsStill = runs.holder && !isAbandoned;
  metrics.started.Add(table, Seconds(runs.last->started.time_since_epoch()));
  metrics.progress.Add(table, runsStill ? Seconds(now - runs.holder->started) : 0);
  metrics.abandoned.Add(table, isAbandoned ? 1 : 0);
  if (runs.lastSuccess) metrics.success.Add(table, Seconds(runs.lastSuccess->end->time.time_since_epoch()));
  if (isAbandoned) metrics.result.Add(table, 0);
  if (!runs.lastEnded) return;
  if (!isAbandoned) metrics.result.Add(table, runs.lastEnded == runs.lastSuccess ? 1 : 0);
  AddEnd(metrics, table, *runs.lastEnded->end);
  const std::optional<RunMoment> lutm = MomentOfLocalTime(runs.lastUpdate);
  if (lutm) metrics.lutm.Add(table, Seconds(now - *lutm));
}

}  // namespace

std::string RunMetrics(const std::vector<Run>& runs, RunMoment now) {
  Metrics metrics;
  for (const auto& [table, tableRuns] : RunsByTable(runs)) {
    if (tableRuns.last) AddTable(metrics, table, tableRuns, now);
  }
  return metrics.Text();
}

}  // namespace qmx
