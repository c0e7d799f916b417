// The run: guard the table, copy it, release it, raise the events.
#include <algorithm>
#include <utility>

#include "copy/clsDataCopy.h"
#include "copy/split.h"
#include "platform/failure_report.h"
#include "platform/names.h"
#include "platform/trim.h"

namespace qmx {
namespace {

constexpr std::int16_t kFinished = 0;
constexpr std::int16_t kAlreadyInProgress = 1;
constexpr std::int16_t kFailed = -1;

// A table name that is longer than a table code has the extended form: table code, "=", key, "=", kind.
constexpr std::size_t kTableCodeLength = 8;  // in characters

std::size_t CharacterCount(const std::string& utf8) {
  const auto beginsCharacter = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; };
  return static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), beginsCharacter));
}

}  // namespace

clsDataCopy::clsDataCopy(Platform& platform, modDeclarations& declarations, DataCopyEvents& events)
    : platform_(platform), declarations_(declarations), events_(events) {}

clsDataCopy::~clsDataCopy() = default;

void clsDataCopy::StartDataCopy(std::string ConnectionString, std::string LocalDataBase, std::string TableName,
                                std::string LogFilePath, std::string BOWBusComponent) {
  const std::int16_t outcome =
      RunCopy(ConnectionString, LocalDataBase, TableName, LogFilePath, Variant(BOWBusComponent));
  declarations_.facts.counts = {InsertCount, UpdateCount, DeleteCount};
  const std::string table = PieceAt(SplitAtEquals(TableName), 0, TableName, "the table code");
  const DateTime now = Now();
  if (outcome == kAlreadyInProgress) {
    events_.DataCopyAlreadyInProgress(now, table);
  } else if (outcome == kFailed) {
    events_.DataCopyError(now, table, std::int16_t{-1}, "DataCopy Failed, see logfile '" + LogFile + "' for details");
  } else {
    events_.DataCopyComplete(now, table, InsertCount, UpdateCount, DeleteCount);
  }
  events_.DataCopydone();
}

std::int16_t clsDataCopy::RunCopy(const std::string& ConnectionString, const std::string& LocalDataBase,
                                  const std::string& TableName, const std::string& LogFilePath,
                                  const Variant& BusComponent) {
  const bool extendedForm = CharacterCount(TableName) > kTableCodeLength;
  const std::string tableCode = extendedForm ? SplitAtEquals(TableName).front() : TableName;
  LogFile = LogFilePath + "\\" + tableCode + ".log";

  try {
    LocalConnection = platform_.database.CreateConnection("ADODB.Connection");
    LocalRecordSet = platform_.database.CreateRecordset("ADODB.Recordset");
    LocalConnection->Open(ConnectionString, "", "");
    if (!Trimmed(LocalDataBase).empty()) LocalConnection->defaultdatabase(LocalDataBase);
    declarations_.CurrentDatabaseName = LocalConnection->defaultdatabase();
    LocalRecordSet->ActiveConnection(*LocalConnection);

    if (IsCopyInProgress(tableCode)) {
      ReportRefusal(tableCode);
      CloseConnection();
      return kAlreadyInProgress;
    }
    if (declarations_.copiesWhole) RequireWholeCopy(tableCode);
    SetCopyInProgress(tableCode);
    const bool byChange = ReadSyncMethod(tableCode) == kOnlyChanged && !declarations_.copiesInFull;
    const std::int16_t syncMethod = byChange ? kOnlyChanged : kFullCopy;
    declarations_.facts.byChange = byChange && !extendedForm;
    events_.DataCopyStarted(Now(), tableCode);
    CopyTable(TableName, tableCode, extendedForm, BusComponent.ToText(), syncMethod);
  } catch (...) {
    const Error failure = CurrentError();
    WriteErrorLog();
    ReleaseCopyInProgress(tableCode);
    CloseConnection();
    platform_.failures.Report(failure);
    return kFailed;
  }

  try {
    ReleaseCopyInProgress(tableCode);
    CloseConnection();
  } catch (...) {
    // The copy itself is done, so the run counts as finished. If the flag is still set, it blocks every later run, and
    // the process's exit status has to show that.
    declarations_.statusWhenFinished = ExitStatus::StartUpFailed;
    WriteErrorLog();
    CloseConnection();
    platform_.failures.Report(CurrentError());
  }
  return kFinished;
}

void clsDataCopy::CopyTable(const std::string& tableName, const std::string& tableCode, bool extendedForm,
                            const std::string& busComponent, std::int16_t syncMethod) {
  using TableCopy =
      void (clsDataCopy::*)(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod);
  static constexpr std::pair<std::string_view, TableCopy> kTables[] = {
      {"tsmdm030", &clsDataCopy::CopyServiceTypes},           {"tsmdm100", &clsDataCopy::CopyServiceCenters},
      {"tsmdm105", &clsDataCopy::CopyServiceAreas},           {"tsmdm130", &clsDataCopy::CopySkills},
      {"tsmdm135", &clsDataCopy::CopySkillsByEmployee},       {"tsmdm140", &clsDataCopy::CopyServiceEmployees},
      {"tscfg220", &clsDataCopy::CopyConfigurations},         {"tscfg200", &clsDataCopy::CopyObjects},
      {"tssoc200", &clsDataCopy::CopyServiceOrders},          {"tssoc205", &clsDataCopy::CopyServiceOrderEngineers},
      {"tssoc210", &clsDataCopy::CopyServiceOrderActivities}, {"tsspc200", &clsDataCopy::CopyPlannedActivities},
      {"tsclm020", &clsDataCopy::CopyResponseTimes},          {"tsclm024", &clsDataCopy::CopyPriorityTimeScales},
      {"tcccp001", &clsDataCopy::CopyAvailabilityTypes},      {"tccom130", &clsDataCopy::CopyAddresses},
  };
  const std::string code = FoldName(tableCode);
  for (const auto& [table, copy] : kTables) {
    if (code == table) return (this->*copy)(tableCode, busComponent, syncMethod);
  }
  if (code != "tcccp030")
    return ReportNothingToCopy("There is no table \"" + tableCode + "\" that can be copied: nothing was copied.",
                               "correct the table code on the command line; \"qmxadmin status\" lists all codes");
  if (!extendedForm) return CopyCalendars(tableCode, busComponent, syncMethod);

  const std::vector<std::string> parts = SplitAtEquals(tableName);
  const std::string& kind = PieceAt(parts, 2, tableName, "the table code");
  if (kind != "E" && kind != "C")
    return ReportNothingToCopy("There is no calendar kind \"" + kind + "\": nothing was copied.",
                               "end the table with =E for an employee's calendar, with =C for one by its code");
  events_.DataCopyStarted(Now(), parts[0]);  // the scheduling server expects the second one
  if (kind == "E") {
    CopyCalendarOfEmployee(parts[1], busComponent);
  } else {
    CopyCalendar(parts[1], busComponent);
  }
}

void clsDataCopy::ReportRefusal(const std::string& tableCode) {
  Error refusal(errors::kNotAllowedNow, "clsDataCopy",
                "The table " + tableCode +
                    " is in progress, so it was not copied: another run copies it, or one ended without releasing it.");
  if (RefusedAfter) refusal.With("last update time", RefusedAfter->ToText());
  platform_.failures.Report(refusal.With(
      "what to do", "copy again later; when no run copies it, release it with \"qmxadmin release " + tableCode + "\""));
}

// For the engine such a run is finished. The process ends with another status.
void clsDataCopy::ReportNothingToCopy(const std::string& reason, const std::string& whatToDo) {
  declarations_.statusWhenFinished = ExitStatus::NothingToCopy;
  platform_.failures.Report(Error(errors::kInvalidCall, "clsDataCopy", reason).With("what to do", whatToDo));
}

void clsDataCopy::CloseConnection() {
  try {
    OpenedConnection().Close();
  } catch (...) {
    WriteErrorLog();
  }
}

Connection& clsDataCopy::OpenedConnection() {
  if (LocalConnection) return *LocalConnection;
  throw Error(errors::kObjectNotSet, "clsDataCopy", "Object variable not set: there is no local connection.");
}

}  // namespace qmx
