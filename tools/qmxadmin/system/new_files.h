// Creates files and folders with names that nobody else has.
#pragma once

#include <cstdio>
#include <string>

namespace qmx {

// Replaces the "XXXXXX" at the end of the path, and opens the new file for writing. Null if that fails, with errno set.
std::FILE* CreateNewFile(std::string& path);

// Everybody may read the file, and its owner may write it. Returns false if that fails, with errno set.
bool LetEverybodyRead(std::FILE* file);

// Replaces the "XXXXXX" at the end of the path by what makes it new. Returns false if that fails, with errno set.
bool CreateNewFolder(std::string& path);

// For temporary files: $TMPDIR or /tmp on a POSIX system.
std::string TemporaryFiles();

}  // namespace qmx
