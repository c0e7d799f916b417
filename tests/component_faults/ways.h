// The ways in which the program can reach the components of an ERP.
#pragma once

#include <memory>
#include <vector>

#include "platform/further_components.h"
#include "tests/component_faults/served_erp.h"

namespace qmx::test {

struct Way {
  const char* name;
  std::unique_ptr<FurtherComponents> (*reach)(ServedErp& erp);  // which is borrowed
};

// Over the C interface first, then the system's own.
const std::vector<Way>& Ways();

// All ProgIDs but the date's are the ERP's.
std::unique_ptr<FurtherComponents> OverTheCInterface(ServedErp& erp);

}  // namespace qmx::test
