// The runs that the records in a log folder tell of.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/qmxadmin/runs/run.h"

namespace qmx {

// All runs, the oldest start first, from QMXRuns.jsonl and its rotated files: QMXRuns.jsonl.1, QMXRuns.jsonl-20261122,
// each also compressed as .gz. Skips what is not a record. Raises 76 if the folder cannot be read, 75 if a file cannot.
// A folder without such a file has no runs.
std::vector<Run> ReadRuns(const std::string& logFolder);

// The runs of one table.
struct TableRuns {
  std::vector<const Run*> runs;      // the oldest first
  const Run* last = nullptr;         // the last that was not refused
  const Run* lastEnded = nullptr;    // the last that ended and was not refused
  const Run* lastSuccess = nullptr;  // the last that was complete
  const Run* holder = nullptr;       // the last that was not refused, if it has no end: it may hold the table
  std::string lastUpdate;            // the last lutm that a run wrote, or empty
};

// By table code. Borrows the runs.
std::map<std::string, TableRuns> RunsByTable(const std::vector<Run>& runs);

}  // namespace qmx
