// Reads files that the kernel makes up when they are read, like those of /proc.
#pragma once

#include <string>

namespace qmx {

// What the file holds. What was read up to there if it cannot be read to its end: the files of a process that ends
// meanwhile refuse the next read (ESRCH). Empty if there is no such file.
std::string ReadKernelFile(const std::string& path);

}  // namespace qmx
