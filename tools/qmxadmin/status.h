// qmxadmin status: the state of every copied table.
#pragma once

#include <string>

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct StatusArguments : DatabaseArguments {
  std::string logs;    // the copies' LOGDIR, or empty
  std::string maxAge;  // how old a last update time may be, such as "26h", or empty
  OutputForm form = OutputForm::Table;
};

// Returns Wrong if something needs attention.
AdminStatus Status(const StatusArguments& arguments);

}  // namespace qmx
