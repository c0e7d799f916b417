// qmxadmin init: creates the missing local tables and leaves existing ones unchanged, except that it rewrites midnights
// that an older release stored in another form.
#pragma once

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct InitArguments : DatabaseArguments {
  bool print = false;    // prints the statements and creates nothing
  std::string printFor;  // prints the statements for this database system, without a connection
  OutputForm form = OutputForm::Table;
  bool quiet = false;  // prints only tables that differ
};

AdminStatus Init(const InitArguments& arguments);

}  // namespace qmx
