// Calendar expansion: turns the working-time records of the local table tcccp030 into plain intervals in tscalender,
// one row per working interval per day, for every calendar that a service employee of tsmdm140 uses.
//
// A calendar is expanded in periods of 100 days. A period holds the records that start in it; they are spread over
// their days, each day's intervals are combined (interval_merging.cpp), and the result is written before the next
// period is read. The first period in which no record starts ends the calendar: nothing after such a gap is expanded.
// Periods are not combined with one another.
//
// Failures, unless CalendarFailed is set: a calendar that cannot be read is skipped or ends early, and a failed delete
// or insert is ignored, all without a report. Some errors end Startprocess: a 16-bit counter or time that overflows is
// error 6, and a record without an end is error 94. They name calendar and record. Nothing is logged here.
//
// The caller sets DBConnection and DBRecordSet before Startprocess; both are borrowed, and the record set is left
// closed unless Startprocess raised.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/database.h"
#include "platform/datetime.h"
#include "platform/variant.h"

namespace qmx {

// One working interval of a day. Times are hours * 100 + minutes; 2400 is midnight at the end of the day.
struct SubEntry {
  std::int32_t stime = 0;
  std::int32_t etime = 0;

  friend bool operator==(const SubEntry&, const SubEntry&) = default;
};

// One day of the current period and its intervals, the earliest first. The order of the array is the order of the
// intervals, so it needs no links.
struct MainEntry {
  std::int16_t day = 0;
  std::int16_t month = 0;
  std::int16_t year = 0;
  std::vector<SubEntry> SubArray;
};

class clsCalender {
 public:
  explicit clsCalender(Database& database);  // borrowed, for the record set of getEmployeeCalenderList

  std::int16_t calcount = 0;    // calendar codes to expand
  DateTime Mindate;             // the day before the calendar's earliest start
  DateTime startdate;           // the current period: after this
  DateTime enddate;             // up to and including this
  DateTime seledate;            // the current boundary
  std::string Calcode;          // the calendar being expanded
  std::int16_t arraycount = 0;  // days in use
  Connection* DBConnection = nullptr;
  Recordset* DBRecordSet = nullptr;

  std::function<void()> BeforeCalendar;  // may be empty; its error ends Startprocess before Calcode is expanded

  // If set, the intervals of each calendar are replaced in one transaction. If any statement of it failed, the calendar
  // keeps its old intervals, this gets the failure, and the next calendar follows.
  std::function<void(const Error& failure)> CalendarFailed;

  Variant Startprocess();
  Variant getCalender();
  Variant deletecalender();
  bool mainfunction();           // always false
  bool GetFirstYearofCalcode();  // false when the calendar has no records
  void initialize();
  void IncrementDate();
  std::int32_t GetRecords();  // 1 found, the record set stays open; 2 none; -1 failed
  Variant process();
  std::int32_t GetCount(DateTime st, DateTime et) const;  // days from st to et, including both

  bool Present_in_Main_Array(std::int16_t day, std::int16_t month, std::int16_t year, std::int16_t& pos) const;
  std::int32_t InsertInMainArray(std::int16_t day, std::int16_t month, std::int16_t year, std::int32_t stime,
                                 std::int32_t etime);                                              // 1
  std::int32_t CheckSubAndInsertModify(std::int16_t pos, std::int32_t stime, std::int32_t etime);  // 0
  Variant ReallignSubArray(std::int16_t ps);

  std::int32_t InsertInDataBase();  // 0
  Variant Insert(std::int16_t ct, std::int16_t dct);

  // Adds every calendar code in use, through a record set of its own.
  void getEmployeeCalenderList(Connection& cnDbConnection, std::vector<std::string>& objCalList);

  // Returns a day of the main array; raises 9 when there is none at that index.
  const MainEntry& Day(std::int16_t pos) const;

 private:
  void ExpandCalendar();  // Calcode
  void ExpandInOneTransaction();
  MainEntry& DayToChange(std::int16_t pos);
  std::int16_t CountOf(const MainEntry& entry) const;  // of its intervals; raises 6 past 16 bits
  Connection& OpenedConnection() const;                // raises 91 if the caller has set none
  Recordset& SharedRecordSet() const;
  void CloseAfterFailure() const noexcept;

  Database& database_;
  SqlText insert_{""};  // of one interval; its memory is used again
  std::vector<std::string> CalArray;
  std::vector<MainEntry> MainArray;
};

}  // namespace qmx
