// The engine's way to the calendar class: which calendars are in use, and the expansion of the local records into
// tscalender. The calendar copies ask for the first; no copy starts the second.
#include "calendar/clsCalender.h"
#include "copy/clsDataCopy.h"
#include "platform/error.h"

namespace qmx {

std::vector<std::string> clsDataCopy::CalendarsInUse() {
  clsCalender calender(platform_.database);
  std::vector<std::string> codes;
  calender.getEmployeeCalenderList(OpenedConnection(), codes);
  return codes;
}

Variant clsDataCopy::FillTable_tscalender() {
  try {
    clsCalender calender(platform_.database);
    calender.DBConnection = LocalConnection.get();
    calender.DBRecordSet = LocalRecordSet.get();
    return calender.Startprocess();
  } catch (...) {
    FailPlus100({"FillTable_tscalender", " Filling tscalender table failed"});
  }
}

}  // namespace qmx
