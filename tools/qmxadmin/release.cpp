#include "tools/qmxadmin/release.h"

#include <unistd.h>

#include <iostream>

#include "platform/error.h"
#include "tools/qmxadmin/control_records.h"
#include "tools/qmxadmin/copied_tables.h"
#include "tools/qmxadmin/running_copies.h"

namespace qmx {
namespace {

// A record of another spelling than the table's own serves as well: a copy that was started by that spelling holds it.
const ControlRecord* FindRecord(const std::map<std::string, ControlRecord>& records, const std::string& table) {
  const auto found = records.find(table);
  if (found == records.end()) RequireCopiedTable(table);
  return found == records.end() ? nullptr : &found->second;
}

void TellWhatIsKnown(const std::string& table, const ControlRecord& record) {
  std::cerr << table << " (" << DescriptionOfTable(table) << ") is in progress; tstables does not tell who copies it.\n"
            << "Last update time: " << (record.lastUpdate ? record.lastUpdate->ToText() : "none") << ".\n";
  const std::vector<RunningCopy> copies = RunningCopiesOf(table);
  for (const RunningCopy& copy : copies) {
    std::cerr << "On this machine process " << copy.process << " has been copying a table of that code since "
              << copy.since.ToText() << ".\n";
  }
  if (copies.empty()) std::cerr << "On this machine no qmxdatacopy copies it; other machines were not looked at.\n";
  std::cerr << "Once it is released the next copy can start. Two copies at a time leave a mixture of rows.\n";
}

bool Confirmed(const std::string& table) {
  if (!isatty(STDIN_FILENO)) {
    throw Error(errors::kNotAllowedNow, "qmxadmin",
                "Standard input is no terminal where somebody could be asked; --yes releases without asking.");
  }
  std::cerr << "Release " << table << "? [y/N] ";
  std::string answer;
  std::getline(std::cin, answer);
  return answer == "y" || answer == "Y" || answer == "yes";
}

}  // namespace

AdminStatus Release(const ReleaseArguments& arguments) {
  LocalDatabase local(arguments);
  const std::map<std::string, ControlRecord> records = ReadControlRecords(local);
  const ControlRecord* record = FindRecord(records, arguments.table);
  if (!record || !record->inProgress) {
    std::cout << arguments.table << ": not in progress, nothing to release\n";
    return AdminStatus::Done;
  }
  TellWhatIsKnown(arguments.table, *record);
  if (!arguments.yes && !Confirmed(arguments.table)) {
    std::cout << arguments.table << ": left in progress\n";
    return AdminStatus::Wrong;
  }
  WriteReleased(local, arguments.table);
  local.Connection().Close();
  std::cout << arguments.table << ": released\n";
  return AdminStatus::Done;
}

}  // namespace qmx
