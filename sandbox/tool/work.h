// Simulates working days in a sandbox file. Each change is a transaction, and is in the audit trail.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "binding/moment.h"

namespace orvan {

struct WorkOrder {
  std::string path;
  std::uint64_t seed = 1;
  int days = 1;
  Moment today;                // the first day to simulate
  std::optional<Moment> from;  // the beginning of the work in the trail; nothing: the machine's clock
};

struct Changes {
  std::string code;
  std::string description;
  long long inserted, updated, deleted;
};

// The number of changes, in the order of AllTables.
std::vector<Changes> Work(const WorkOrder& order);

}  // namespace orvan
