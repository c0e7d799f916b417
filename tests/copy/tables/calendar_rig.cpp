#include "tests/copy/tables/calendar_rig.h"

namespace qmx::test {

Getters Interval(const std::string& ccal, const char* stdt, int sttm, const char* endt, int entm) {
  return {{"getCalendar", ccal},
          {"getavailabilityType", "WRK"},
          {"getStartDate", DateTime::Parse(stdt).value()},
          {"getStartTime", sttm},
          {"getEndDate", DateTime::Parse(endt).value()},
          {"getEndTime", entm},
          {"getCumulativeTime", 8.5},
          {"getCumulativeCapacity", 2.0}};
}

void CalendarRig::ErpHas(std::map<std::string, std::vector<Getters>> calendars) {
  const auto listing = [calendars = std::move(calendars)](ScriptedObject::Arguments bounds) {
    const auto calendar = calendars.find(bounds[0].Value().ToText());
    return calendar == calendars.end() ? std::nullopt : std::optional(calendar->second);
  };
  erp.ListsBy(kCalendarManager, listing, "listActualCalendar");
}

void CalendarRig::Employee(const std::string& emno, const std::string& ccal) {
  Sql("insert into tsmdm140 (emno, ccal) values ('" + emno + "', '" + ccal + "')");
}

void CalendarRig::LocalRecord(const std::string& ccal, const std::string& stdt, int sttm) {
  Sql("insert into tcccp030 (ccal, ract, stdt, sttm, endt, entm) values ('" + ccal + "', 'WRK', '" + stdt + "', " +
      std::to_string(sttm) + ", '" + stdt + "', 1700)");
}

void CalendarRig::AuditsByCalendar(std::vector<std::vector<AuditEntry>> entries) {
  ControlRecord(kCalendars, kOnlyChanged, "2026-11-19");
  erp.AuditsInTurn(kCalendarRecord, std::move(entries));
}

void CalendarRig::HasCalendarsToCopy(std::int16_t syncMethod) {
  ControlRecord(kCalendars, syncMethod, "2026-11-19");
  Employee("4711", "DAY");
  Employee("4712", "NIGHT");
  LocalRecord("DAY", "2026-11-01", 800);
  LocalRecord("OTHER", "2026-11-01", 800);
  const Getters day1 = Interval("DAY", "2026-11-20", 800, "2026-11-20", 1200);
  const Getters day2 = Interval("DAY", "2026-11-20", 1300, "2026-11-20", 1700);
  ErpHas({{"DAY", {day1, day2}}, {"NIGHT", {Interval("NIGHT", "2026-11-21", 2200, "2026-11-21", 2400)}}});
  erp.AuditsInTurn(kCalendarRecord,
                   {{Inserted(day1), Updated(day2), Deleted(Interval("DAY", "2026-11-01", 800, "2026-11-01", 1700))}});
}

std::vector<std::string> CalendarRig::CallsOfTheCopy() const {
  const std::vector<std::string>& lines = calls.Lines();
  std::size_t start = 0;
  std::size_t end = lines.size();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].starts_with("event Started")) start = i + 1;
    if (lines[i].find("Open \"select * from tstables") != std::string::npos) end = i;
  }
  return {lines.begin() + static_cast<std::ptrdiff_t>(start), lines.begin() + static_cast<std::ptrdiff_t>(end)};
}

}  // namespace qmx::test
