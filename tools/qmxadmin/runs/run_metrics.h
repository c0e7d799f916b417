// The state of the copies as Prometheus reads it.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/runs/run.h"

namespace qmx {

// In the text format, for the textfile collector of node_exporter. One series per table that has run.
std::string RunMetrics(const std::vector<Run>& runs, RunMoment now);

}  // namespace qmx
