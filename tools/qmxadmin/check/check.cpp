#include "tools/qmxadmin/check/check.h"

#include "platform/error.h"
#include "tools/qmxadmin/check/check_components.h"
#include "tools/qmxadmin/check/check_database.h"
#include "tools/qmxadmin/check/check_logs.h"
#include "tools/qmxadmin/check/findings.h"
#include "tools/qmxadmin/local_database.h"
#include "tools/qmxadmin/system/separate_work.h"
#include "tools/qmxadmin/verify/calendars_of_employees.h"

namespace qmx {
namespace {

// Returns none if the database does not answer, which is a finding of its own.
std::vector<std::string> LocalCalendars(const DatabaseArguments& arguments) {
  try {
    LocalDatabase local(arguments, Purpose::Read);
    return CalendarsOfEmployees(local);
  } catch (const Error&) {
    return {};
  }
}

}  // namespace

AdminStatus Check(const CheckArguments& arguments) {
  Findings findings(arguments.form, arguments.quiet);
  if (!SeparateWork::IsThisProcess()) {
    CheckDatabase(arguments, findings);
    if (arguments.logs.empty()) {
      findings.NotChecked("log folder", "--logs is not given");
    } else {
      CheckLogs(arguments.logs, findings);
    }
  }
  // The database is closed when the components are called, because they run in a process of their own.
  CheckComponents({arguments.component, arguments.records,
                   arguments.records ? LocalCalendars(arguments) : std::vector<std::string>()},
                  findings);
  if (arguments.records && arguments.component.empty())
    findings.NotChecked("records", "--component is not given, so no record was read");
  findings.End();
  return findings.AnyWrong() ? AdminStatus::Wrong : AdminStatus::Done;
}

}  // namespace qmx
