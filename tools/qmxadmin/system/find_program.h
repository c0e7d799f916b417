// Finds a program of this product.
#pragma once

#include <string>

namespace qmx {

// Returns the path of the program: in the folder of this program, or else in a folder of $PATH. Empty if there is none.
std::string FindProgram(const std::string& name);

}  // namespace qmx
