// What the program says about itself.
#pragma once

#include <string>

namespace qmx {

std::string Usage();    // one paragraph, shown after a failure that nothing trapped
std::string Help();     // all of it, for --help
std::string Version();  // one line, for --version

std::string VersionNumber();

}  // namespace qmx
