// Turns a system call's failure into an Error with the classic number.
#pragma once

#include <string>

namespace qmx {

// `code` is an errno value. The description names the file by its native path; the system's message is a detail.
// `reason` says what is wrong with the file if the code alone does not.
[[noreturn]] void RaiseSystemError(int code, const std::string& source, const std::string& nativePath,
                                   const std::string& reason = {});

// Whether the system's code says that there is no room, or none for this user or this file.
bool MeansFullDisk(int code) noexcept;

}  // namespace qmx
