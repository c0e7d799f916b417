// Actual calendars (tcccp030): the working-time records of the calendars that service employees use, within a range of
// start dates that ends in 2038.
//
// Copies all of them, in full or by change, or a single one on request: an employee's, or one by its code. The copies
// never change tscalender.
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"
#include "platform/trim.h"

namespace qmx {
namespace {

constexpr const char* kTable = "tcccp030";
constexpr const char* kManager = "Calendars.CalendarManager";
constexpr const char* kRecord = "Calendars.ActualCalendar";
constexpr const char* kHighestType = "ZZZZZZZZZ";
constexpr std::int16_t kEarliestTime = 0;
constexpr std::int16_t kLatestTime = 2400;
constexpr int kLastYear = 2038;
constexpr int kLookBackOnRequest = 60;  // days; only the other copies read the look-back file

const Member kInitialize = "initialize";
const Member kGetClass = "getClass";
const Member kListActualCalendar = "listActualCalendar";
const Member kAddParameter = "addParameter";
const Member kAddOutputField = "addOutputField";
const Member kClose = "Close";

constexpr const char* kOutputFields[] = {"ccal", "ract", "stdt", "sttm", "endt", "entm", "cutm", "ccap"};

const std::vector<Column> kKeyColumns = {"ccal", "ract", "stdt", "sttm"};
const KeyCondition kKey = {
    {" where ccal='", "getCalendar", "'"},
    {" and   ract='", "getavailabilityType", "'"},
    {" and   stdt='", "getStartDate", "'", true},
    {" and   sttm= ", "getStartTime", ""},
};

const FieldMaps kFields = {
    {"ccal", "getCalendar"},       {"ract", "getavailabilityType"},
    {"stdt", "getStartDate"},      {"sttm", "getStartTime"},
    {"endt", "getEndDate"},        {"entm", "getEndTime"},
    {"cutm", "getCumulativeTime"}, {"ccap", "getCumulativeCapacity"},
};
const Column kStartDate = "stdt";
const Column kStartTime = "sttm";
const Column kEndDate = "endt";
const Column kEndTime = "entm";
const Column kStartMoment = "ustm";
const Column kFinishMoment = "uftm";
const Column kDuration = "ahrs";

constexpr FailureTexts kFullFailure = {"Copy Calenders", " Copy of Calenders from Orvan to Local DB failed"};
constexpr FailureTexts kChangedFailure = {"Copy Calenders - Only Changed",
                                          " Copy of Calenders from Orvan to Local DB failed"};
constexpr FailureTexts kEmployeeFailure = {"Copy Calendar of Employee",
                                           " Copy of Calendar of Employee from Orvan to Local DB failed"};
constexpr FailureTexts kCalendarFailure = {"Copy Calender Of Employee",
                                           " Copy of Calender Of Employee from Orvan to Local DB failed"};
constexpr FailureTexts kDeleteFailure = {"Delete Calendar", "Deleting records from Calendar failed"};

// Bounds of the start dates, as the texts that the ERP takes. The last one is today's day and month in 2038, even if
// 2038 has no such day.
struct StartDates {
  std::string from;
  std::string to;
};

enum class Form { Plain, Padded };  // of months and days below 10

std::string DateText(int year, int month, int day, Form form) {
  const auto twoDigits = [form](int part) {
    return (form == Form::Padded && part < 10 ? "0" : "") + std::to_string(part);
  };
  return std::to_string(year) + "-" + twoDigits(month) + "-" + twoDigits(day);
}

StartDates StartDatesSince(int lookBack, DateTime today, Form form) {
  const DateTime first = today.PlusDays(-lookBack);
  return {DateText(first.Year(), first.Month(), first.Day(), form),
          DateText(kLastYear, today.Month(), today.Day(), form)};
}

std::vector<Variant> ListingBounds(const std::string& code, const StartDates& dates) {
  return {code, code, "", kHighestType, dates.from, dates.to, kEarliestTime, kLatestTime};
}

SqlText SelectCalendar(const std::string& code) {
  return SqlText("select * from tcccp030 where ccal = '").Value(code).Append("'");
}

// Date and time of day in one; 2400 is midnight at the end of the day.
DateTime Moment(const Variant& date, std::int32_t time) {
  return date.ToDateTime().DatePart().PlusTime(time / 100, time % 100, 0);
}

std::int32_t MinuteOfDay(std::int32_t time) { return time / 100 * 60 + time % 100; }

// Ignores the dates, so hours and minutes of a shift over midnight are both negative.
std::string DurationText(std::int32_t startTime, std::int32_t endTime) {
  const std::int32_t minutes = MinuteOfDay(endTime) - MinuteOfDay(startTime);
  return std::to_string(minutes / 60) + " Hours " + std::to_string(minutes % 60) + " Minutes";
}

}  // namespace

// Asks for no calendar: this checks that the manager answers, not what it lists.
ErpListing CalendarsInErp() {
  return {kTable, kManager, kRecord, kListActualCalendar, ListingBounds("", {"2038-1-1", "2038-12-31"})};
}

void clsDataCopy::CopyCalendars(const std::string& tableCode, const std::string& busComponent,
                                std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopyCalendarsFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopyCalendarsChanged(tableCode, busComponent);
}

void clsDataCopy::CopyCalendarsFull(const std::string& tableCode, const std::string& busComponent) {
  InsertCount = 0;
  Object manager;
  try {
    manager = platform_.components.CreateObject(kManager);
    manager.Call(kInitialize, busComponent);
    const int lookBack = ReadCalendarLookBack();
    const StartDates dates = StartDatesSince(lookBack, Now(), Form::Plain);
    const std::vector<std::string> calendars = CalendarsInUse();
    if (calendars.empty()) return;

    WriteRows(tableCode, [&] {
      DeleteAllRecords(tableCode);
      OpenTable(tableCode);
      RunTimeStamp = Now();
      for (const std::string& code : calendars) {
        if (const Object records = List(manager, kListActualCalendar, ListingBounds(code, dates)))
          AddCalendarRecords(records);
      }
      if (!LocalRecordSet->BOF()) LocalRecordSet->Update();
      WriteLastUpdateTime(tableCode, RunTimeStamp);
      LocalRecordSet->Close();
    });
    WriteCountLog(tableCode, InsertCount, 0, 0);
    manager.Call(kClose);
  } catch (...) {
    FailFullCopy(manager, kFullFailure);
  }
}

void clsDataCopy::CopyCalendarsChanged(const std::string& tableCode, const std::string& busComponent) {
  InsertCount = UpdateCount = DeleteCount = 0;
  try {
    Audit audit;
    CreateAudit(audit, kManager, kRecord, 4);
    audit.manager.Call(kInitialize, busComponent);
    audit.recordClass = audit.record.Call(kGetClass);
    SetAuditPeriod(audit, tableCode);

    const Object& types = audit.parameters[0];
    const Object& startDates = audit.parameters[1];
    const Object& startTimes = audit.parameters[2];
    const Object& calendar = audit.parameters[3];
    SetAuditParameter(types, "ract", "", kHighestType);
    const int lookBack = ReadCalendarLookBack();
    const StartDates dates = StartDatesSince(lookBack, Now(), Form::Padded);
    SetAuditParameter(startDates, "stdt", dates.from, dates.to);
    SetAuditParameter(startTimes, "sttm", "0000", "2400");
    for (const char* field : kOutputFields) audit.criteria.Call(kAddOutputField, field);

    const std::vector<std::string> calendars = CalendarsInUse();
    WriteRows(tableCode, [&] {
      for (const std::string& code : calendars) {
        if (CalendarIsLocal(code)) {
          // All calendars share one criteria object, which keeps its parameters: it grows by four with each calendar.
          SetAuditParameter(calendar, "ccal", code, code);
          for (const Object& parameter : {calendar, types, startDates, startTimes}) {
            audit.criteria.Call(kAddParameter, parameter);
          }
          audit.reader.Call(kInitialize, audit.manager, audit.record, audit.criteria);
          ApplyAuditEntries(audit, kKey, kKey, tableCode, ChangeMapperOf(&clsDataCopy::SetCalendarFields));
        } else if (const Object records = List(audit.manager, kListActualCalendar, ListingBounds(code, dates))) {
          LocalRecordSet->Open(SelectCalendar(code), OpenedConnection(), kCursorKeyset, kLockOptimistic, kCommandText);
          AddCalendarRecords(records);
          LocalRecordSet->Close();  // saves the last row
        }
      }
      FinishPeriod(audit, tableCode);
    });
    WriteCountLog(tableCode, InsertCount, UpdateCount, DeleteCount);
  } catch (...) {
    FailChangedCopy(kChangedFailure);
  }
}

void clsDataCopy::CopyCalendarOfEmployee(const std::string& employee, const std::string& busComponent) {
  try {
    const std::unique_ptr<Recordset> row = platform_.database.CreateRecordset("ADODB.RECORDSET");
    row->Open(SqlText("select * from tsmdm140 where emno = '").Value(std::string(Trimmed(employee))).Append("'"),
              OpenedConnection(), kCursorKeyset, kLockOptimistic, kCommandText);
    std::string calendar;
    if (row->recordcount() != 0) calendar = std::string(Trimmed(row->Fields("ccal").Value().ToText()));
    row->Close();
    if (!calendar.empty()) CopyCalendar(calendar, busComponent);
  } catch (...) {
    FailPlus100(kEmployeeFailure);
  }
}

void clsDataCopy::CopyCalendar(const std::string& calendarCode, const std::string& busComponent) {
  InsertCount = 0;
  Object manager;
  try {
    const SqlText select = SelectCalendar(calendarCode);
    manager = platform_.components.CreateObject(kManager);
    manager.Call(kInitialize, busComponent);
    const StartDates dates = StartDatesSince(kLookBackOnRequest, Now(), Form::Plain);
    const Object records = List(manager, kListActualCalendar, ListingBounds(calendarCode, dates));
    WriteRows(kTable, [&] {
      if (records) {
        DeleteCalendar(calendarCode);
        LocalRecordSet->Open(select, OpenedConnection(), kCursorKeyset, kLockOptimistic, kCommandText);
        AddCalendarRecords(records);
      }
      // Without records the record set was never opened, and the copy fails here, so that the calendar does not count
      // as copied.
      if (!LocalRecordSet->BOF()) LocalRecordSet->Update();
      LocalRecordSet->Close();
    });
    WriteCountLog(kTable, InsertCount, 0, 0);
    manager.Call(kClose);
  } catch (...) {
    FailFullCopy(manager, kCalendarFailure);
  }
}

void clsDataCopy::DeleteCalendar(const std::string& calendarCode) {
  try {
    OpenedConnection().CommandTimeout(kDeleteTimeout);
    OpenedConnection().Execute(SqlText("DELETE FROM tcccp030 WHERE ccal = '").Value(calendarCode).Append("'"));
  } catch (...) {
    FailPlus100(kDeleteFailure);
  }
}

bool clsDataCopy::CalendarIsLocal(const std::string& calendarCode) {
  const std::unique_ptr<Recordset> rows = platform_.database.CreateRecordset("ADODB.Recordset");
  rows->Open(SelectCalendar(calendarCode), OpenedConnection(), kCursorKeyset, kLockOptimistic, kCommandText);
  const bool local = rows->recordcount() > 0;
  rows->Close();
  return local;
}

void clsDataCopy::AddCalendarRecords(const Object& records) {
  AddRecords(records, kKeyColumns, kTable, MapperOf(&clsDataCopy::SetCalendarFields));
}

void clsDataCopy::SetCalendarFields(Recordset& row, const Object& record) {
  SetFields(kFields, row, record);
  const std::int32_t startTime = row.Fields(kStartTime).Value().ToInt32();
  row.Fields(kStartMoment) = Moment(row.Fields(kStartDate).Value(), startTime);
  const Variant endDate = row.Fields(kEndDate).Value();
  const Variant endTime = row.Fields(kEndTime).Value();
  if (endDate.IsNull() || endTime.IsNull()) {
    // The audit reader has only the key of a record that was deleted after its change. The deletion follows.
    row.Fields(kFinishMoment) = Variant::Null();
    row.Fields(kDuration) = Variant::Null();
    return;
  }
  row.Fields(kFinishMoment) = Moment(endDate, endTime.ToInt32());
  row.Fields(kDuration) = DurationText(startTime, endTime.ToInt32());
}

}  // namespace qmx
