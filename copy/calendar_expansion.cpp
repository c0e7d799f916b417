// Calls the calendar class: for the calendars in use, which the calendar copies need, and for the expansion of the
// local records into tscalender, which no copy starts.
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
