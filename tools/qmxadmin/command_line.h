// What qmxadmin is told to do: its subcommands with their arguments. The only place that reads arguments.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/admin_status.h"

namespace qmx {

// Runs the command that the arguments ask for. Wrong ones are told on standard error, without repeating what may hold a
// password, and are AdminStatus::Failed; what the command raises passes through.
AdminStatus RunCommandLine(const std::vector<std::string>& arguments);

}  // namespace qmx
