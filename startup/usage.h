// The texts of --help, --version and the usage message.
#pragma once

#include <string>

namespace qmx {

std::string Usage();    // one paragraph, printed after a failure that nothing trapped
std::string Help();     // for --help
std::string Version();  // one line

std::string VersionNumber();

}  // namespace qmx
