// CONNECTION and DATABASE from the environment, so that no password has to stand on a command line.
#pragma once

#include <string>
#include <vector>

namespace qmx {

// The arguments with QMX_CONNECTION and QMX_DATABASE put in behind the first one, the command. They are left as they
// are where QMX_CONNECTION is not set or empty, and where one of them is a connection text: letters and blanks before a
// "=".
std::vector<std::string> WithEnvironment(std::vector<std::string> arguments);

}  // namespace qmx
