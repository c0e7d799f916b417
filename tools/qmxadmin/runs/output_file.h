// A file that readers see whole, the old one or the new one.
#pragma once

#include <string>

namespace qmx {

// Writes a new file beside `path` and renames it. Raises 75 if that fails, and leaves the old file as it was. The path
// "-" is standard output.
void WriteOutputFile(const std::string& path, const std::string& text);

}  // namespace qmx
