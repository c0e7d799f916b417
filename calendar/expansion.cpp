// From calendar records to the rows of tscalender, calendar by calendar and 100 days at a time.
#include <limits>

#include "calendar/clsCalender.h"
#include "platform/error.h"
#include "platform/join.h"

namespace qmx {

namespace {

constexpr const char* kCodesInUse = "select DISTINCT tsmdm140.ccal  from tsmdm140 WHERE tsmdm140.ccal <>  '' ";
constexpr int kPeriodDays = 100;
constexpr int kDeleteTimeout = 150;  // seconds

std::int16_t OneMore(std::int16_t counter, const char* what) {
  if (counter == std::numeric_limits<std::int16_t>::max()) {
    throw Error(errors::kOverflow, "clsCalender",
                std::string("Overflow: the calendar expansion has more than 32767 ") + what + ".");
  }
  return static_cast<std::int16_t>(counter + 1);
}

template <typename Entry>
const Entry& At(const std::vector<Entry>& entries, std::int16_t index, const char* what) {
  if (index < 0 || static_cast<std::size_t>(index) >= entries.size()) {
    throw Error(errors::kSubscriptOutOfRange, "clsCalender",
                "Subscript out of range: the calendar expansion has no " + std::string(what) + " " +
                    std::to_string(index) + ".");
  }
  return entries[static_cast<std::size_t>(index)];
}

// Describes the record by its key without the calendar: "stdt=2001-03-05, sttm=800, ract='W'".
std::string DescribeRecord(Recordset& records) {
  std::string text;
  for (const char* name : {"stdt", "sttm", "ract"}) {
    try {
      const Variant value = records.Fields(name).Value();
      const std::string shown = value.IfText() ? "'" + value.ToText() + "'" : value.ToText();
      AppendItem(text, ", ", std::string(name) + "=" + shown);
    } catch (const Error&) {  // the table has no such column: the other columns suffice
    }
  }
  return text;
}

// Hours and minutes of a time of day, rounded down, so that the minutes are never negative.
struct HoursMinutes {
  explicit HoursMinutes(std::int32_t time)
      : hours(time / 100 - (time % 100 < 0 ? 1 : 0)), minutes(std::int64_t{time} - 100 * hours) {}
  std::int64_t hours;
  std::int64_t minutes;
};

}  // namespace

clsCalender::clsCalender(Database& database) : database_(database) {}

Variant clsCalender::Startprocess() {
  getCalender();
  for (std::int16_t i = 0; i < calcount; ++i) {
    Calcode = At(CalArray, i, "calendar");
    if (BeforeCalendar) BeforeCalendar();
    CalendarFailed ? ExpandInOneTransaction() : ExpandCalendar();
  }
  return {};
}

void clsCalender::ExpandCalendar() {
  arraycount = 0;
  MainArray.clear();
  deletecalender();
  mainfunction();
}

void clsCalender::ExpandInOneTransaction() {
  bool isDone = false;
  try {
    OpenedConnection().Atomically([&] {
      ExpandCalendar();
      isDone = true;
    });
  } catch (Error& error) {
    if (!isDone) throw;
    CalendarFailed(error.With("calendar", Calcode));
  }
}

Variant clsCalender::getCalender() {
  try {
    Recordset& records = SharedRecordSet();
    records.Open(kCodesInUse, OpenedConnection(), kCursorKeyset, kLockOptimistic, kCommandText);
    const std::int32_t found = records.recordcount();
    calcount = 0;
    CalArray.assign(static_cast<std::size_t>(found), std::string());
    if (found > 0) {
      records.MoveFirst();
      while (!records.Eof()) {
        CalArray.at(static_cast<std::size_t>(calcount)) = records.Fields(std::size_t{0}).Value().ToText();
        calcount = OneMore(calcount, "calendars");
        records.MoveNext();
      }
    }
    records.Close();
  } catch (const std::exception&) {
    CloseAfterFailure();
  }
  return {};
}

void clsCalender::getEmployeeCalenderList(Connection& cnDbConnection, std::vector<std::string>& objCalList) {
  try {
    const std::unique_ptr<Recordset> records = database_.CreateRecordset("ADODB.Recordset");
    records->Open(kCodesInUse, cnDbConnection, kCursorKeyset, kLockOptimistic, kCommandText);
    if (records->recordcount() > 0) {
      records->MoveFirst();
      while (!records->Eof()) {
        objCalList.push_back(records->Fields(std::size_t{0}).Value().ToText());
        records->MoveNext();
      }
    }
    records->Close();
  } catch (const std::exception&) {
    // The list holds what was read.
  }
}

Variant clsCalender::deletecalender() {
  try {
    Connection& connection = OpenedConnection();
    connection.CommandTimeout(kDeleteTimeout);
    connection.Execute(SqlText(" delete from tscalender where tscalender.ccal = '").Value(Calcode).Append("'"));
  } catch (const std::exception&) {
    // The old rows stay, beside the new ones.
  }
  return {};
}

bool clsCalender::mainfunction() {
  if (!GetFirstYearofCalcode()) return false;
  initialize();
  IncrementDate();
  while (GetRecords() == 1) {
    process();
    SharedRecordSet().Close();
    InsertInDataBase();
    arraycount = 0;
    IncrementDate();
  }
  return false;
}

bool clsCalender::GetFirstYearofCalcode() {
  if (Calcode.find_first_not_of(' ') == std::string::npos) return false;
  bool found = false;
  try {
    Recordset& records = SharedRecordSet();
    records.Open(SqlText("select min(tcccp030.stdt)  from tcccp030 where tcccp030.ccal = '").Value(Calcode).Append("'"),
                 OpenedConnection(), kCursorKeyset, kLockOptimistic, kCommandText);
    if (records.recordcount() > 0) {
      // Without records the smallest date is null, and the calendar is skipped.
      Mindate = records.Fields(std::size_t{0}).Value().ToDateTime().PlusDays(-1);
      found = true;
    }
    records.Close();
    return found;
  } catch (const std::exception&) {
    CloseAfterFailure();
    return false;
  }
}

void clsCalender::initialize() { seledate = Mindate; }

void clsCalender::IncrementDate() {
  startdate = seledate;
  seledate = seledate.PlusDays(kPeriodDays);
  enddate = seledate;
}

std::int32_t clsCalender::GetRecords() {
  try {
    Recordset& records = SharedRecordSet();
    records.Open(SqlText("select *  from tcccp030 where tcccp030.ccal = '")
                     .Value(Calcode)
                     .Append("' and tcccp030.stdt > '")
                     .Value(startdate)
                     .Append("' and tcccp030.stdt <= '")
                     .Value(enddate)
                     .Append("' order by tcccp030.stdt, tcccp030.sttm "),
                 OpenedConnection(), kCursorKeyset, kLockOptimistic, kCommandText);
    if (records.recordcount() > 0) return 1;
    records.Close();
    return 2;
  } catch (const std::exception&) {
    CloseAfterFailure();
    return -1;
  }
}

Variant clsCalender::process() {
  static const Column stdt("stdt"), endt("endt"), sttm("sttm"), entm("entm");
  Recordset& records = SharedRecordSet();
  records.MoveFirst();
  const auto spread = [&] {
    const DateTime start = records.Fields(stdt).Value().ToDateTime();
    const std::int32_t days = GetCount(start, records.Fields(endt).Value().ToDateTime());
    for (std::int32_t k = 0; k < days; ++k) {
      const DateTime date = start.PlusDays(k);
      const auto day = static_cast<std::int16_t>(date.Day());
      const auto month = static_cast<std::int16_t>(date.Month());
      const auto year = static_cast<std::int16_t>(date.Year());
      const std::int16_t stime = records.Fields(sttm).Value().ToInt16();
      const std::int16_t etime = records.Fields(entm).Value().ToInt16();
      std::int16_t pos = 0;
      if (Present_in_Main_Array(day, month, year, pos)) {
        CheckSubAndInsertModify(pos, stime, etime);
        ReallignSubArray(pos);
      } else {
        InsertInMainArray(day, month, year, stime, etime);
      }
    }
  };
  while (!records.Eof()) {
    try {
      spread();
    } catch (Error& error) {
      error.With("calendar", Calcode)
          .With("record", DescribeRecord(records))
          .With("what to do", "copy this calendar again as tcccp030=" + Calcode + "=C, then expand again");
      throw;
    }
    records.MoveNext();
  }
  return {};
}

std::int32_t clsCalender::GetCount(DateTime st, DateTime et) const {
  constexpr std::int64_t day = DateTime::kSecondsPerDay;
  const std::int64_t seconds = et.Seconds() - st.Seconds() + day;
  std::int64_t days = seconds / day - (seconds % day < 0 ? 1 : 0);
  const std::int64_t rest = seconds - days * day;
  if (rest * 2 > day || (rest * 2 == day && days % 2 != 0)) ++days;
  return static_cast<std::int32_t>(days);
}

bool clsCalender::Present_in_Main_Array(std::int16_t day, std::int16_t month, std::int16_t year,
                                        std::int16_t& pos) const {
  for (std::int16_t i = arraycount; i-- > 0;) {  // no day is there twice, and it is mostly one of the last
    const MainEntry& entry = Day(i);
    if (entry.day == day && entry.month == month && entry.year == year) {
      pos = i;
      return true;
    }
  }
  return false;
}

std::int32_t clsCalender::InsertInMainArray(std::int16_t day, std::int16_t month, std::int16_t year, std::int32_t stime,
                                            std::int32_t etime) {
  const std::int16_t count = OneMore(arraycount, "days in one period");
  MainArray.resize(static_cast<std::size_t>(arraycount));
  MainArray.push_back({day, month, year, {{stime, etime}}});
  arraycount = count;
  return 1;
}

std::int32_t clsCalender::InsertInDataBase() {
  bool isDone = false;
  const auto insert = [&] {
    for (std::int16_t i = 0; i < arraycount; ++i) {
      const std::int16_t intervals = CountOf(Day(i));
      for (std::int16_t j = 0; j < intervals; ++j) Insert(i, j);
    }
    isDone = true;
  };
  try {
    DBConnection ? DBConnection->Together(insert) : insert();
  } catch (const std::exception&) {
    if (!isDone) throw;
    // Rows that could not be committed are lost, like rows that could not be inserted.
  }
  return 0;
}

Variant clsCalender::Insert(std::int16_t ct, std::int16_t dct) {
  try {
    const MainEntry& entry = Day(ct);
    const SubEntry& interval = At(entry.SubArray, dct, "interval");
    const DateTime date = DateTime::FromDate(entry.year, entry.month, entry.day);
    const HoursMinutes from(interval.stime);
    const HoursMinutes to(interval.etime);
    const DateTime start = date.PlusTime(from.hours, from.minutes, 0);
    const DateTime end = to.hours == 24 ? date.PlusDays(1) : date.PlusTime(to.hours, to.minutes, 0);
    insert_.Restart("insert into tscalender (ccal,sttm,entm) Values ('")
        .Value(Calcode)
        .Append("','")
        .Value(start)
        .Append("','")
        .Value(end)
        .Append("')");
    OpenedConnection().ExecuteSoon(insert_);
  } catch (const std::exception&) {
    // This row is lost; the next one is tried.
  }
  return {};
}

const MainEntry& clsCalender::Day(std::int16_t pos) const { return At(MainArray, pos, "day"); }

MainEntry& clsCalender::DayToChange(std::int16_t pos) { return const_cast<MainEntry&>(Day(pos)); }

std::int16_t clsCalender::CountOf(const MainEntry& entry) const {
  if (entry.SubArray.size() > std::numeric_limits<std::int16_t>::max()) {
    throw Error(errors::kOverflow, "clsCalender",
                "Overflow: a day of calendar '" + Calcode + "' has more than 32767 intervals.");
  }
  return static_cast<std::int16_t>(entry.SubArray.size());
}

Connection& clsCalender::OpenedConnection() const {
  if (!DBConnection) {
    throw Error(errors::kObjectNotSet, "clsCalender", "Object variable not set: DBConnection has no connection.");
  }
  return *DBConnection;
}

Recordset& clsCalender::SharedRecordSet() const {
  if (!DBRecordSet) {
    throw Error(errors::kObjectNotSet, "clsCalender", "Object variable not set: DBRecordSet has no record set.");
  }
  return *DBRecordSet;
}

// The failure that led here counts. A second one at Close is ignored.
void clsCalender::CloseAfterFailure() const noexcept {
  try {
    if (DBRecordSet && DBRecordSet->State() != kStateClosed) DBRecordSet->Close();
  } catch (const std::exception&) {
  }
}

}  // namespace qmx
