#include "tools/qmxadmin/release.h"

#include <fmt/format.h>

#include <algorithm>
#include <iostream>

#include "platform/error.h"
#include "platform/names.h"
#include "platform/system/descriptors.h"
#include "platform/system/paths.h"
#include "platform/system/terminal.h"
#include "platform/trim.h"
#include "tools/qmxadmin/control_records.h"
#include "tools/qmxadmin/copied_tables.h"
#include "tools/qmxadmin/running_copies.h"
#include "tools/qmxadmin/runs/run_history.h"

namespace qmx {
namespace {

// A record in another spelling than the table's own is valid too. A copy that was started with that spelling holds it.
const ControlRecord* FindRecord(const std::map<std::string, ControlRecord>& records, const std::string& table) {
  const auto found = records.find(table);
  if (found == records.end()) CopiedTable(table);  // raises 5 for an unknown table
  return found == records.end() ? nullptr : &found->second;
}

// Returns the record of the run that holds the table, or null if none is known.
const Run* HolderOf(const std::vector<Run>& runs, const std::string& table) {
  const std::map<std::string, TableRuns> tables = RunsByTable(runs);
  const auto found = tables.find(FoldName(table));
  return found == tables.end() ? nullptr : found->second.holder;
}

void PrintHolder(const Run& run) {
  std::cerr << fmt::format("The run {} by {} on {}, process {}, started at {}: {}.\n", run.number, run.user, run.host,
                           run.process.value_or(0), LocalText(run.started), StateText(run));
}

void PrintCopies(const std::vector<RunningCopy>& copies) {
  for (const RunningCopy& copy : copies) {
    std::cerr << fmt::format("Process {} on this machine has been copying a table of this code since {}.\n",
                             copy.process, copy.since.ToText());
  }
  if (copies.empty()) std::cerr << "No qmxdatacopy on this machine copies it. Other machines were not checked.\n";
}

void PrintWhatIsKnown(const std::string& table, const ControlRecord& record, const Run* holder,
                      const std::vector<RunningCopy>& copies) {
  std::cerr << fmt::format("{} ({}) is in progress.{}\nLast update time: {}.\n", table, DescriptionOfTable(table),
                           holder ? "" : " Its control record does not say which process copies it.",
                           record.lastUpdate ? record.lastUpdate->ToText() : "none");
  if (holder) {
    PrintHolder(*holder);
  } else {
    PrintCopies(copies);
  }
  std::cerr << "After the release the next copy can start. Two copies of a table at the same time mix their rows.\n";
}

// A run record is taken at its word. Without one, a process that copies into the same database may hold the table.
bool IsAlive(const Run* holder, const std::vector<RunningCopy>& copies, const DatabaseArguments& database) {
  if (holder) return StateOf(*holder) == RunState::Running;
  return std::any_of(copies.begin(), copies.end(), [&](const RunningCopy& copy) {
    return copy.connection == Trimmed(database.connection) && copy.database == Trimmed(database.database);
  });
}

bool Confirmed(const std::string& table) {
  if (!IsTerminal(kStandardInput)) {
    throw Error(errors::kNotAllowedNow, "qmxadmin",
                "Standard input is not a terminal, so nobody can confirm. --yes releases without asking.");
  }
  std::cerr << fmt::format("Release {}? [y/N] ", table);
  std::string line;
  std::getline(std::cin, line);
  const std::string_view answer = Trimmed(line, " \t\r");  // a console of Windows ends its lines with CR LF
  return answer == "y" || answer == "Y" || answer == "yes";
}

enum class Outcome { NotInProgress, LeftInProgress, StillCopied, Released };

void PrintLines(const std::vector<std::pair<std::string, Outcome>>& outcomes) {
  static constexpr const char* kWords[] = {"not in progress, nothing to release", "left in progress",
                                           "left in progress, a process on this machine copies it", "released"};
  for (const auto& [table, outcome] : outcomes) {
    std::cout << fmt::format("{}: {}\n", table, kWords[static_cast<int>(outcome)]);
  }
}

void PrintJson(const std::vector<std::pair<std::string, Outcome>>& outcomes) {
  Listing listing{{{.key = "table"}, {.key = "was_in_progress"}, {.key = "released"}}, {}};
  for (const auto& [table, outcome] : outcomes) {
    listing.rows.push_back({table, outcome != Outcome::NotInProgress, outcome == Outcome::Released});
  }
  Print(listing, OutputForm::Json);
}

Outcome ReleaseOne(LocalDatabase& local, const std::string& table, const ControlRecord* record,
                   const std::vector<Run>& runs, const ReleaseArguments& arguments) {
  if (!record || !record->inProgress) return Outcome::NotInProgress;
  const std::vector<RunningCopy> copies = RunningCopiesOf(table);
  const Run* const holder = HolderOf(runs, table);
  if (!arguments.quiet || !arguments.yes) PrintWhatIsKnown(table, *record, holder, copies);
  if (IsAlive(holder, copies, arguments) && !arguments.force) {
    std::cerr << "A running copy needs its table. Use --force to release it all the same.\n";
    return Outcome::StillCopied;
  }
  if (!arguments.yes && !Confirmed(table)) return Outcome::LeftInProgress;
  WriteReleased(local, table);
  return Outcome::Released;
}

}  // namespace

AdminStatus Release(const ReleaseArguments& arguments) {
  LocalDatabase local(arguments, Purpose::Write);
  const std::map<std::string, ControlRecord> records = ReadControlRecords(local);
  const std::vector<Run> runs = arguments.logs.empty() ? std::vector<Run>() : ReadRuns(NativePath(arguments.logs));
  for (const std::string& table : arguments.tables) FindRecord(records, table);  // every code is checked first
  std::vector<std::pair<std::string, Outcome>> outcomes;
  for (const std::string& table : arguments.tables) {
    outcomes.emplace_back(table, ReleaseOne(local, table, FindRecord(records, table), runs, arguments));
  }
  local.Connection().Close();
  if (arguments.form == OutputForm::Json) {
    PrintJson(outcomes);
  } else if (!arguments.quiet) {
    PrintLines(outcomes);
  }
  const bool isLeft = std::any_of(outcomes.begin(), outcomes.end(), [](const auto& outcome) {
    return outcome.second == Outcome::LeftInProgress || outcome.second == Outcome::StillCopied;
  });
  return isLeft ? AdminStatus::Wrong : AdminStatus::Done;
}

}  // namespace qmx
