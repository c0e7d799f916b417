// What this process's user may do with a file.
#pragma once

#include <string>

namespace qmx {

enum class FileRight { Read, Write };

// Returns an errno value (ENOENT without the file, EROFS on a read-only file system), or 0.
int AccessProblem(const std::string& nativePath, FileRight right);

// Returns an errno value if this user may not add files to the folder, or 0.
int FolderAccessProblem(const std::string& nativePath);

}  // namespace qmx
