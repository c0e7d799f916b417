// What the run records add to the state of a table.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/qmxadmin/control_records.h"
#include "tools/qmxadmin/listing.h"
#include "tools/qmxadmin/runs/run_history.h"

namespace qmx {

class StatusRuns {
 public:
  // Without a log folder nothing is known of runs.
  explicit StatusRuns(const std::string& logFolder);

  void AddColumns(Listing& listing) const;
  void AddValues(const std::string& table, std::vector<Variant>& row) const;

  // What needs attention, in words. Empty if nothing does. `record` is null if there is none. A lutm that is older than
  // `maxAge`, or missing, is one such thing.
  std::vector<std::string> Problems(const std::string& table, const ControlRecord* record,
                                    std::optional<std::chrono::seconds> maxAge) const;

 private:
  const TableRuns& RunsOf(const std::string& table) const;

  bool isKnown_;
  RunMoment now_;
  std::vector<Run> runs_;
  std::map<std::string, TableRuns> byTable_;
};

}  // namespace qmx
