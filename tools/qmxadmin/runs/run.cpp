#include "tools/qmxadmin/runs/run.h"

#include <fmt/format.h>

#include "platform/names.h"
#include "platform/run_records/record_fields.h"
#include "platform/system/clock.h"
#include "platform/system/process_identity.h"

namespace qmx {

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::seconds;

std::string Run::TableCode() const { return FoldName(table.substr(0, table.find('='))); }

std::string Run::Rows() const {
  if (!end || !end->inserted) return {};
  return fmt::format("{} added, {} updated, {} removed", *end->inserted, end->updated.value_or(0),
                     end->deleted.value_or(0));
}

std::string Run::ShownMode() const { return mode == run_records::kWhole ? mode : ""; }

std::string Run::Reason() const {
  if (!end || end->causes.empty() || end->causes.front().empty()) return {};
  return end->causes.front().back().description;
}

RunState StateOf(const Run& run) {
  if (run.end) return run.end->outcome == run_records::kComplete ? RunState::Complete : RunState::NotComplete;
  if (run.host != HostName() || !run.process) return RunState::OtherHost;
  if (!run.boot.empty() && run.boot != BootNumber()) return RunState::HostRebooted;
  const std::optional<std::int64_t> startTicks = StartTicksOf(*run.process);
  return startTicks && startTicks == run.startTicks ? RunState::Running : RunState::ProcessGone;
}

std::string StateText(const Run& run) {
  switch (StateOf(run)) {
    case RunState::Complete:
    case RunState::NotComplete:
      return run.end->outcome;
    case RunState::Running:
      return "running";
    case RunState::ProcessGone:
      return "never ended, process gone";
    case RunState::HostRebooted:
      return "never ended, host rebooted";
    case RunState::OtherHost:
      break;
  }
  return "no end, process on " + (run.host.empty() ? "another host" : run.host);
}

bool IsFailure(const Run& run) {
  switch (StateOf(run)) {
    case RunState::NotComplete:
      return run.end->outcome != run_records::kRefused;
    case RunState::ProcessGone:
    case RunState::HostRebooted:
      return true;
    default:
      return false;
  }
}

std::string LocalText(RunMoment moment) {
  return LocalTime(std::chrono::floor<seconds>(moment).time_since_epoch().count()).ToFullText();
}

std::string DurationText(milliseconds duration) {
  const auto whole = duration_cast<seconds>(duration).count();
  if (whole < 10) return fmt::format("{:.2f} s", static_cast<double>(duration.count()) / 1000);
  if (whole < 60) return fmt::format("{:.1f} s", static_cast<double>(duration.count()) / 1000);
  if (whole < 3600) return fmt::format("{}:{:02} min", whole / 60, whole % 60);
  return fmt::format("{}:{:02}:{:02} h", whole / 3600, whole / 60 % 60, whole % 60);
}

std::string AgeText(seconds age) {
  const auto whole = age.count();
  if (whole < 60) return fmt::format("{} s", whole);
  if (whole < 2 * 3600) return fmt::format("{} min", whole / 60);
  if (whole < 2 * 86400) return fmt::format("{} h", whole / 3600);
  return fmt::format("{} days", whole / 86400);
}

}  // namespace qmx
