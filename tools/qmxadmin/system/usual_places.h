// Where this system's administrators keep things.
#pragma once

#include <string>

namespace qmx {

std::string UsualSettingsFile();  // "/etc/default/qmxdatacopy" on a POSIX system

}  // namespace qmx
