// Several runs of qmxdatacopy, so many at a time, watched until the last one has ended.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/qmxadmin/copy/copy_log.h"

namespace qmx {

struct CopyRun {
  std::string table;
  std::string commandLine;
  // What became of it:
  std::string result = "not run";
  std::optional<CopyCounts> counts = {};
  std::optional<double> seconds = {};
  std::optional<int> exitStatus = {};  // none where it was not run, or did not end by itself
};

// Raises 53 where there is no qmxdatacopy. Which copies are not run, and why, is told on standard error, as is what
// failing ones say.
void RunCopies(std::vector<CopyRun>& runs, const std::string& logDirectory, std::size_t atATime);

}  // namespace qmx
