// qmxadmin init: makes the local tables that are missing and leaves alone those that are there, except for midnights
// that an older release stored in another form: those are rewritten.
#pragma once

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"

namespace qmx {

struct InitArguments : DatabaseArguments {
  bool print = false;    // shows the statements and makes nothing
  std::string printFor;  // the same for a database system, without a connection
};

AdminStatus Init(const InitArguments& arguments);

}  // namespace qmx
