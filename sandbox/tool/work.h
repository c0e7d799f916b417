// Plays working days on a sandbox file. All changes are in its audit trail, each in a transaction of its own.
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
  Moment today;                // the day that the changes are about; further days follow it
  std::optional<Moment> from;  // when the trail says that the work began; nothing: the machine's clock
};

struct Changes {
  std::string code;
  std::string description;
  long long inserted, updated, deleted;
};

// What was changed, in the order of AllTables.
std::vector<Changes> Work(const WorkOrder& order);

}  // namespace orvan
