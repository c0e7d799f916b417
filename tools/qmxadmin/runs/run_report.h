// The state of the copies as a page for people.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tools/qmxadmin/runs/run.h"

namespace qmx {

// A table that the page shows, whether it has run or not.
struct ReportedTable {
  std::string code;
  std::string description;
};

// One HTML page without scripts and without references to other files: for each table its state, a strip of the last 30
// days' results, and its durations and rows; then the last failures with their causes.
std::string RunReport(const std::vector<ReportedTable>& tables, const std::vector<Run>& runs, RunMoment now);

}  // namespace qmx
