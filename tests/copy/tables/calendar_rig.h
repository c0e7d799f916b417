// What the tests of the calendar copies share: an ERP with calendars, employees that use them, and the calls in
// between.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/copy/tables/table_copy.h"

namespace qmx::test {

inline constexpr const char* kCalendars = "tcccp030";
inline constexpr const char* kCalendarManager = "Calendars.CalendarManager";
inline constexpr const char* kCalendarRecord = "Calendars.ActualCalendar";

// One record of an ERP calendar, with dates as date-times and times as numbers.
Getters Interval(const std::string& ccal, const char* stdt, int sttm, const char* endt, int entm);

struct CalendarRig : CopyRig {
  using CopyRig::CopyRig;

  // The ERP's calendars by code; one that is missing here is listed as no object.
  void ErpHas(std::map<std::string, std::vector<Getters>> calendars);
  void Employee(const std::string& emno, const std::string& ccal);
  void LocalRecord(const std::string& ccal, const std::string& stdt, int sttm);

  // Sync method 2, last update 2026-11-19, and what the reader tells each time it is initialised.
  void AuditsByCalendar(std::vector<std::vector<AuditEntry>> entries);

  // Last update 2026-11-19. Employees 4711 and 4712 use DAY and NIGHT, which the ERP lists and of which DAY has
  // changed. Local are an old record of DAY and one of OTHER.
  void HasCalendarsToCopy(std::int16_t syncMethod);

  // ccal, stdt, sttm and entm of every local record.
  std::vector<std::string> LocalRecords() { return Rows(kCalendars, {"ccal", "stdt", "sttm", "entm"}); }

  // Everything between the last start event and the release of the table.
  std::vector<std::string> CallsOfTheCopy() const;
};

}  // namespace qmx::test
