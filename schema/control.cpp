#include "platform/control_record.h"
#include "schema/column_words.h"

namespace qmx {

std::vector<LocalTable> ControlTables() {
  using namespace control_record;
  return {
      {"tstables",
       "",
       {TableCode(kTableName), Setting(kInUse), Setting(kFreq), Setting(kReqd), Setting(kSyme), Moment(kLutm)},
       {kTableName},
       {}},
      // The same interval may be written twice, so there is no key.
      {"tscalender", "", {Code("ccal"), Moment("sttm"), Moment("entm")}, {}, {"ccal"}},
  };
}

}  // namespace qmx
