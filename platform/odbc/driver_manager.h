// What each operating system's ODBC does in its own way.
#pragma once

#include <string>

namespace qmx {

// Whether narrow texts reach the drivers byte by byte, so that they are UTF-8 for a driver that takes UTF-8. On Windows
// a driver may take them for texts of the system's code page, so the program has wide texts only.
extern const bool kNarrowTextsAreUnchanged;

// What to do about a driver or a data source that is not known.
extern const char* const kCheckNames;

// Returns the keywords and values of a data source file in the driver manager's own folder as a connection text; "" if
// it cannot be read or has no section [ODBC], and where there is no such folder.
std::string ReadDriverManagersFile(const std::string& name);

}  // namespace qmx
