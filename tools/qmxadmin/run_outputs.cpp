#include "tools/qmxadmin/run_outputs.h"

#include "platform/system/paths.h"
#include "tools/qmxadmin/copied_tables.h"
#include "tools/qmxadmin/runs/output_file.h"
#include "tools/qmxadmin/runs/run_history.h"
#include "tools/qmxadmin/runs/run_metrics.h"
#include "tools/qmxadmin/runs/run_report.h"

namespace qmx {
namespace {

RunMoment Now() { return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now()); }

}  // namespace

AdminStatus WriteMetrics(const RunOutputArguments& arguments) {
  WriteOutputFile(arguments.output, RunMetrics(ReadRuns(NativePath(arguments.logs)), Now()));
  return AdminStatus::Done;
}

AdminStatus WriteReport(const RunOutputArguments& arguments) {
  std::vector<ReportedTable> tables;
  for (const LocalTable& table : CopiedTables())
    tables.push_back({table.name, std::string(DescriptionOfTable(table.name))});
  WriteOutputFile(arguments.output, RunReport(tables, ReadRuns(NativePath(arguments.logs)), Now()));
  return AdminStatus::Done;
}

}  // namespace qmx
