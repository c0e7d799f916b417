// The file of a data source, which FILEDSN names.
//
// Its section [ODBC] has the keywords and values of a connection text, each pair on a line. Lines that begin with ";"
// or
// "#" are comments. The text is UTF-8 on every system.
#pragma once

#include <string>

namespace qmx {

// Returns the pairs as a connection text. A name that is no path is one of the driver manager's own folder, where it
// has one. Raises an error with file and line if the file is missing, has no pairs, or has a line that cannot be used.
std::string ReadDataSourceFile(const std::string& file);

}  // namespace qmx
