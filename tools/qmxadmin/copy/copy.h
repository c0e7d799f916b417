// qmxadmin copy: copies several tables, each with a run of qmxdatacopy of its own, and sums up how they went.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct CopyArguments : DatabaseArguments {
  std::vector<std::string> tables;  // codes, or calendars' extended forms
  bool all = false;                 // besides those that are named
  std::string logs;                 // LOGDIR of every run
  std::string component;            // "COMPONENT1, COMPONENT2" of every run
  std::string request;              // REQUEST; empty: none
  int jobs = 1;                     // runs at a time
  OutputForm form = OutputForm::Table;
};

// Progress stands on standard error, the summary on standard output. Wrong when any table was not copied. SIGINT,
// SIGTERM and SIGHUP are passed on to the copies that run, and no further one is started. The summary has each table's
// fate all the same.
AdminStatus CopyTables(const CopyArguments& arguments);

}  // namespace qmx
