#include "tools/qmxadmin/verify/report.h"

#include "tools/qmxadmin/verify/json_report.h"
#include "tools/qmxadmin/verify/line_report.h"

namespace qmx {

std::unique_ptr<VerifyReport> MakeVerifyReport(std::ostream& out, OutputForm form, bool quiet) {
  if (form == OutputForm::Json) return std::make_unique<JsonReport>(out);
  return std::make_unique<LineReport>(out, quiet);
}

}  // namespace qmx
