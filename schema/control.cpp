#include "schema/column_words.h"

namespace qmx {

std::vector<LocalTable> ControlTables() {
  return {
      {"tstables",
       "",
       {TableCode("TableName"), Setting("in_use"), Setting("freq"), Setting("reqd"), Setting("syme"), Moment("lutm")},
       {"TableName"},
       {}},
      // The same interval may be written twice, so there is no key.
      {"tscalender", "", {Code("ccal"), Moment("sttm"), Moment("entm")}, {}, {"ccal"}},
  };
}

}  // namespace qmx
