// What each operating system's ODBC does in its own way.
#pragma once

#include <string>

namespace qmx {

// Whether narrow texts reach the drivers byte by byte, so that they are UTF-8 for a driver that takes UTF-8. On Windows
// a driver may take them for texts of the system's code page, so the program has wide texts only.
extern const bool kNarrowTextsAreUnchanged;

// Returns the keywords and values of a data source file as a connection text; "" if it cannot be read or has no section
// [ODBC].
std::string ReadDataSourceFile(const std::string& file);

}  // namespace qmx
