// qmxadmin status: the state of every copied table.
#pragma once

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct StatusArguments : DatabaseArguments {
  OutputForm form = OutputForm::Table;
};

AdminStatus Status(const StatusArguments& arguments);

}  // namespace qmx
