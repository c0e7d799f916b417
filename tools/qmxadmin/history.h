// qmxadmin history: the runs that the log folder's records tell of.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct HistoryArguments {
  std::vector<std::string> tables;  // all if empty
  std::string logs;
  std::size_t last = 20;  // at most so many runs
  bool failed = false;    // failed runs and runs that never ended only
  std::string since;      // "2026-11-20", "2026-11-20 14:05", "26h", or empty
  std::string run;        // a run's number or its beginning, or empty
  OutputForm form = OutputForm::Table;
};

// Returns Wrong if a run is asked for and there is none.
AdminStatus ShowHistory(const HistoryArguments& arguments);

}  // namespace qmx
