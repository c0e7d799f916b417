// Runs several copies, a given number at a time, and waits until the last one has ended.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "tools/qmxadmin/copy/copy_log.h"
#include "tools/qmxadmin/copy/copy_process.h"

namespace qmx {

struct CopyRun {
  std::string table;
  std::string commandLine;
  // The outcome:
  std::string result = "not run";
  std::optional<CopyCounts> counts = {};
  std::optional<std::chrono::milliseconds> duration = {};  // empty if it was not run
  std::optional<int> exitStatus = {};                      // empty if it was not run or did not end by itself
};

struct RunOptions {
  std::string logDirectory;
  std::size_t atATime = 1;
  CopyMode mode = {};
  bool quiet = false;  // prints nothing about copies that succeed
};

// Raises 53 if there is no qmxdatacopy. Prints to standard error which copies were not run and why, and the output of
// copies that failed.
void RunCopies(std::vector<CopyRun>& runs, const RunOptions& options);

}  // namespace qmx
