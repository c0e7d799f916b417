// The command line of qmxadmin: its subcommands and their arguments.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/admin_status.h"

namespace qmx {

// Runs the command that the arguments name. Reports wrong arguments on standard error, without repeating what may be a
// password, and returns Failed. Raises what the command raises.
AdminStatus RunCommandLine(const std::vector<std::string>& arguments);

}  // namespace qmx
