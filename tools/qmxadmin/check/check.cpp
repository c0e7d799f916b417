#include "tools/qmxadmin/check/check.h"

#include "tools/qmxadmin/check/check_components.h"
#include "tools/qmxadmin/check/check_database.h"
#include "tools/qmxadmin/check/check_logs.h"
#include "tools/qmxadmin/check/findings.h"

namespace qmx {

AdminStatus Check(const CheckArguments& arguments) {
  Findings findings(arguments.form);
  CheckDatabase(arguments, findings);
  if (arguments.logs.empty()) {
    findings.NotLookedAt("log folder", "--logs is not given");
  } else {
    CheckLogs(arguments.logs, findings);
  }
  CheckComponents(arguments.component, findings);
  findings.End();
  return findings.AnyWrong() ? AdminStatus::Wrong : AdminStatus::Done;
}

}  // namespace qmx
