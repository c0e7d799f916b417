// qmxadmin check: whether everything that the copies need is there and answers.
#pragma once

#include <string>

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct CheckArguments : DatabaseArguments {
  std::string logs;       // LOGDIR of the copies; empty: not looked at
  std::string component;  // "COMPONENT1, COMPONENT2" of the copies; empty: the ERP is not asked
  OutputForm form = OutputForm::Table;
};

// Wrong where something is. Nothing is changed, but for a file that is made in the log folder and removed again.
AdminStatus Check(const CheckArguments& arguments);

}  // namespace qmx
