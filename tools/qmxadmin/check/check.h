// qmxadmin check: checks that everything the copies need is in place and answers.
#pragma once

#include <string>

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct CheckArguments : DatabaseArguments {
  std::string logs;       // the copies' LOGDIR; empty: not checked
  std::string component;  // the copies' "COMPONENT1, COMPONENT2"; empty: the ERP is not called
  bool records = false;   // also reads one record per table, and the audit trail
  OutputForm form = OutputForm::Table;
  bool quiet = false;  // prints failed checks only
};

// Returns Wrong if a check fails. Changes nothing, except that it creates a file in the log folder and removes it.
AdminStatus Check(const CheckArguments& arguments);

}  // namespace qmx
