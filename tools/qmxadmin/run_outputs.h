// qmxadmin metrics and qmxadmin report: what the run records tell, for Prometheus and for people.
#pragma once

#include <string>

#include "tools/qmxadmin/admin_status.h"

namespace qmx {

struct RunOutputArguments {
  std::string logs;
  std::string output = "-";  // a file that is replaced by a rename; "-" is standard output
};

AdminStatus WriteMetrics(const RunOutputArguments& arguments);
AdminStatus WriteReport(const RunOutputArguments& arguments);

}  // namespace qmx
