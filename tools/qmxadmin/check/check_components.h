// Checks the components that the copies need: each is registered, loads, can be created and answers.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/check/finding_sink.h"

namespace qmx {

struct ComponentChecks {
  std::string businessComponent;  // passed to each manager; if it is empty, the managers are created but not called
  bool records = false;           // also reads one record per table, and the audit trail
  std::vector<std::string> calendars;  // of the local service employees, for the record of a calendar
};

// The components are called in a process of their own. If one of them ends it, that is a finding, and the others are
// still checked.
void CheckComponents(const ComponentChecks& checks, FindingSink& findings);

}  // namespace qmx
