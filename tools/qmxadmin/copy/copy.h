// qmxadmin copy: copies tables, each in its own run of qmxdatacopy, and prints a summary.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct CopyArguments : DatabaseArguments {
  std::vector<std::string> tables;  // table codes, or the extended form of calendars
  bool all = false;                 // all tables, in addition to those in `tables`
  bool full = false;                // in full, whatever the tables' sync methods
  bool whole = false;               // each in one transaction
  std::string logs;                 // LOGDIR of every run
  std::string component;            // "COMPONENT1, COMPONENT2" of every run
  std::string request;              // REQUEST; empty: none
  int jobs = 1;                     // runs at a time
  OutputForm form = OutputForm::Table;
  bool quiet = false;  // prints only what went wrong
};

// Prints progress to standard error and the summary to standard output. Returns Wrong if any table was not copied.
// SIGINT, SIGTERM and SIGHUP are passed on to the running copies, and no further copy is started. The summary then
// still has a row for every table.
AdminStatus CopyTables(const CopyArguments& arguments);

}  // namespace qmx
