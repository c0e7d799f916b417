#include "schema/column_words.h"

namespace qmx {

std::vector<LocalTable> CalendarTables() {
  return {
      {"tcccp001",
       "Availability Types",
       {Code("ract"), Description("dsca"), Code("ptmu"), Number("hrsd"), Code("avlb")},
       {"ract"},
       {}},
      {"tcccp030",
       "Calendars",
       {Code("ccal"), Code("ract"), Moment("stdt"), TimeOfDay("sttm"), Moment("endt"), TimeOfDay("entm"),
        Number("cutm"), Number("ccap"), Moment("ustm"), Moment("uftm"), Code("ahrs")},
       {"ccal", "ract", "stdt", "sttm"},
       {"ccal", "stdt"}},  // as the expansion reads it
  };
}

}  // namespace qmx
