// qmxadmin components: the registered component servers, their ProgIDs, and whether they load. Of COM, the ProgIDs that
// the copies use.
#pragma once

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct ComponentsArguments {
  OutputForm form = OutputForm::Table;
};

// Returns Wrong if a folder or a manifest cannot be read, or if a library does not load or lacks a ProgID.
AdminStatus ShowComponents(const ComponentsArguments& arguments);

}  // namespace qmx
