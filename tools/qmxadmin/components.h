// qmxadmin components: which component servers are registered, for what, and whether they load.
#pragma once

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct ComponentsArguments {
  OutputForm form = OutputForm::Table;
};

// Wrong where a folder or a manifest cannot be read, or a library does not load.
AdminStatus ShowComponents(const ComponentsArguments& arguments);

}  // namespace qmx
