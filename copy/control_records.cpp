// The control records of tstables: the in-progress flag, the sync method and the last update time of each table.
//
// Every routine opens a record set of its own on the run's connection, touches one record and closes it. Check and set
// of the flag are two steps: two runs that start at the same instant can both pass the check.
#include "copy/clean_up.h"
#include "copy/clsDataCopy.h"
#include "platform/control_record.h"
#include "platform/error.h"
#include "platform/failure_report.h"

namespace qmx {

using namespace control_record;

namespace {

// A null or empty value is none.
bool IsNone(const Variant& value) { return value.IsNull() || value.IsEmpty(); }

// For reports only: none if the column holds no date-time or is missing.
std::optional<DateTime> MomentIn(Recordset& record, const char* column) {
  try {
    const Variant value = record.Fields(column).Value();
    if (!IsNone(value) && value.ToDateTime() > DateTime()) return value.ToDateTime();
  } catch (const Error&) {
  }
  return std::nullopt;
}

// True when the table has a record, on which the record set then stands.
bool OpenControlRecord(Recordset& record, Connection& connection, const std::string& tableCode) {
  SqlText query("select * from tstables where tablename = '");
  query.Value(tableCode).Append("'");
  record.Open(query, connection, kCursorKeyset, kLockOptimistic, kCommandText);
  return record.recordcount() > 0;
}

void AddControlRecord(Recordset& record, const std::string& tableCode) {
  record.AddNew();
  record.Fields(kTableName) = tableCode;
}

// Drops the pending change after a failure, so that a half-filled control record is never saved.
void CloseAfterFailure(const std::unique_ptr<Recordset>& record) {
  if (!record || record->State() == kStateClosed) return;
  record->CancelUpdate();
  record->Close();
}

}  // namespace

std::int16_t clsDataCopy::OnControlRecord(const std::string& tableCode, const FailureTexts& failure,
                                          const ControlStep& step) {
  std::unique_ptr<Recordset> record;
  try {
    record = platform_.database.CreateRecordset("ADODB.Recordset");
    const bool found = OpenControlRecord(*record, OpenedConnection(), tableCode);
    const std::int16_t result = step(*record, found);
    record->Close();
    return result;
  } catch (...) {
    const Error trapped = CurrentError();
    WriteErrorLog();
    CleanUp cleanUp;
    cleanUp.Take([&] { CloseAfterFailure(record); });
    cleanUp.Raise(Error(trapped.Number(), failure.source, failure.description + tableCode + " Failed"));
  }
}

bool clsDataCopy::IsCopyInProgress(const std::string& tableCode) {
  static constexpr FailureTexts kFailure = {"Data Copy In Progress",
                                            "Checking of whether Data Copy is in Progress for table "};
  return OnControlRecord(tableCode, kFailure, [&](Recordset& record, bool found) {
           if (!found) return kFree;
           const Variant inUse = record.Fields(kInUse).Value();
           if (IsNone(inUse) || inUse.ToDouble() != kInProgress) return kFree;
           RefusedAfter = MomentIn(record, kLutm);
           return kInProgress;
         }) == kInProgress;
}

void clsDataCopy::SetCopyInProgress(const std::string& tableCode) {
  static constexpr FailureTexts kFailure = {"Set Data Copy In Progress",
                                            "Setting Data Copy in Progress flag for table "};
  OnControlRecord(tableCode, kFailure, [&](Recordset& record, bool found) {
    if (!found) AddControlRecord(record, tableCode);
    record.Fields(kInUse) = kInProgress;
    if (!found) {
      record.Fields(kFreq) = kNewFreq;
      record.Fields(kReqd) = kNewReqd;
    }
    record.Update();
    return kInProgress;
  });
}

std::int16_t clsDataCopy::ReadSyncMethod(const std::string& tableCode) {
  static constexpr FailureTexts kFailure = {"ReadSyncMethod", "Reading the synchronization Method for table "};
  return OnControlRecord(tableCode, kFailure, [](Recordset& record, bool found) {
    const Variant syncMethod = found ? record.Fields(kSyme).Value() : Variant();
    return IsNone(syncMethod) ? std::int16_t{0} : syncMethod.ToInt16();
  });
}

void clsDataCopy::ReleaseCopyInProgress(const std::string& tableCode) {
  static constexpr FailureTexts kFailure = {"ReleaseCopyInProgress",
                                            "Release of Data copy in Progress flag for table "};
  try {
    OnControlRecord(tableCode, kFailure, [&](Recordset& record, bool found) {
      if (!found) AddControlRecord(record, tableCode);
      record.Fields(kInUse) = kFree;
      if (!found) record.Fields(kLutm) = Now().DatePart();
      record.Update();
      return kFree;
    });
  } catch (Error& failure) {
    failure.With("what to do", "if the table is still in progress, release it with \"qmxadmin release\"");
    throw;
  }
}

void clsDataCopy::WriteLastUpdateTime(const std::string& tableCode, DateTime moment) {
  std::unique_ptr<Recordset> record;
  try {
    record = platform_.database.CreateRecordset("ADODB.Recordset");
    if (!OpenControlRecord(*record, OpenedConnection(), tableCode)) AddControlRecord(*record, tableCode);
    record->Fields(kLutm) = moment;
    record->Update();
    record->Close();
    declarations_.facts.lastUpdateTime = moment;
  } catch (...) {
    // Without a new lutm the next run reads a longer period, which does no harm. The copy continues, but the exit
    // status reports the failure.
    const Error failure = CurrentError();
    WriteErrorLog();
    CleanUp().Take([&] { CloseAfterFailure(record); });
    if (declarations_.copiesWhole) throw;  // the rows are not saved without it
    declarations_.statusWhenFinished = ExitStatus::StartUpFailed;
    platform_.failures.Report(
        Error(failure.Number(), "clsDataCopy", "The last update time of table " + tableCode + " was not written.")
            .With("what to do",
                  "correct the cause; the next copy by change then reads the changes since the old time again"));
  }
}

Object clsDataCopy::LastUpdateAsDateObject(const std::string& tableCode) {
  const Object date = platform_.components.CreateObject("java:java.util.Date");
  const std::unique_ptr<Recordset> record = platform_.database.CreateRecordset("ADODB.Recordset");
  const bool found = OpenControlRecord(*record, OpenedConnection(), tableCode);
  const Variant lutm = found ? record->Fields(kLutm).Value() : Variant();
  record->Close();

  // The day goes in before the month and the year, on an object that holds today's date: the ERP's rules for a day that
  // is out of range then apply as they always have.
  const DateTime moment = LastUpdateTime = IsNone(lutm) ? DateTime() : lutm.ToDateTime();
  if (moment > DateTime()) {
    date.Call("setDate", static_cast<std::int16_t>(moment.Day()));
    date.Call("setmonth", static_cast<std::int16_t>(moment.Month() - 1));
    date.Call("setYear", static_cast<std::int16_t>(moment.Year() - 1900));
    date.Call("setHours", static_cast<std::int16_t>(moment.Hour()));
    date.Call("setMinutes", static_cast<std::int16_t>(moment.Minute()));
    date.Call("setSeconds", static_cast<std::int16_t>(moment.Second()));
  } else {
    date.Call("setDate", std::int16_t{1});
    date.Call("setmonth", std::int16_t{0});
    date.Call("setYear", std::int16_t{70});
  }
  return date;
}

}  // namespace qmx
