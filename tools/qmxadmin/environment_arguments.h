// CONNECTION and DATABASE from the environment, which keeps passwords off the command line.
#pragma once

#include <string>
#include <vector>

namespace qmx {

// Inserts QMX_CONNECTION and QMX_DATABASE after the first argument, the command. Returns the arguments unchanged if
// QMX_CONNECTION is not set or is empty, or if one of them is a connection text: letters and blanks before a "=".
std::vector<std::string> WithEnvironment(std::vector<std::string> arguments);

}  // namespace qmx
