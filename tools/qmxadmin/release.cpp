#include "tools/qmxadmin/release.h"

#include <fmt/format.h>
#include <unistd.h>

#include <iostream>

#include "platform/error.h"
#include "tools/qmxadmin/control_records.h"
#include "tools/qmxadmin/copied_tables.h"
#include "tools/qmxadmin/running_copies.h"

namespace qmx {
namespace {

// A record in another spelling than the table's own is valid too. A copy that was started with that spelling holds it.
const ControlRecord* FindRecord(const std::map<std::string, ControlRecord>& records, const std::string& table) {
  const auto found = records.find(table);
  if (found == records.end()) CopiedTable(table);  // raises 5 for an unknown table
  return found == records.end() ? nullptr : &found->second;
}

void PrintWhatIsKnown(const std::string& table, const ControlRecord& record) {
  std::cerr << fmt::format(
      "{} ({}) is in progress. Its control record does not say which process copies it.\n"
      "Last update time: {}.\n",
      table, DescriptionOfTable(table), record.lastUpdate ? record.lastUpdate->ToText() : "none");
  const std::vector<RunningCopy> copies = RunningCopiesOf(table);
  for (const RunningCopy& copy : copies) {
    std::cerr << fmt::format("Process {} on this machine has been copying a table of this code since {}.\n",
                             copy.process, copy.since.ToText());
  }
  if (copies.empty()) std::cerr << "No qmxdatacopy on this machine copies it. Other machines were not checked.\n";
  std::cerr << "After the release the next copy can start. Two copies of a table at the same time mix their rows.\n";
}

bool Confirmed(const std::string& table) {
  if (!isatty(STDIN_FILENO)) {
    throw Error(errors::kNotAllowedNow, "qmxadmin",
                "Standard input is not a terminal, so nobody can confirm. --yes releases without asking.");
  }
  std::cerr << fmt::format("Release {}? [y/N] ", table);
  std::string answer;
  std::getline(std::cin, answer);
  return answer == "y" || answer == "Y" || answer == "yes";
}

enum class Outcome { NotInProgress, LeftInProgress, Released };

void PrintOutcome(const ReleaseArguments& arguments, Outcome outcome) {
  if (arguments.form == OutputForm::Json) {
    Print({{{.key = "table"}, {.key = "was_in_progress"}, {.key = "released"}},
           {{arguments.table, outcome != Outcome::NotInProgress, outcome == Outcome::Released}}},
          OutputForm::Json);
    return;
  }
  static constexpr const char* kWords[] = {"not in progress, nothing to release", "left in progress", "released"};
  if (!arguments.quiet) std::cout << fmt::format("{}: {}\n", arguments.table, kWords[static_cast<int>(outcome)]);
}

}  // namespace

AdminStatus Release(const ReleaseArguments& arguments) {
  LocalDatabase local(arguments);
  const std::map<std::string, ControlRecord> records = ReadControlRecords(local);
  const ControlRecord* record = FindRecord(records, arguments.table);
  Outcome outcome = Outcome::NotInProgress;
  if (record && record->inProgress) {
    if (!arguments.quiet || !arguments.yes) PrintWhatIsKnown(arguments.table, *record);
    outcome = arguments.yes || Confirmed(arguments.table) ? Outcome::Released : Outcome::LeftInProgress;
    if (outcome == Outcome::Released) WriteReleased(local, arguments.table);
  }
  local.Connection().Close();
  PrintOutcome(arguments, outcome);
  return outcome == Outcome::LeftInProgress ? AdminStatus::Wrong : AdminStatus::Done;
}

}  // namespace qmx
