// What the system refuses, as an Error with the classic number.
#pragma once

#include <string>

namespace qmx {

// `code` is an errno value. The path stands in the description as it was given, its native form and the system's own
// words are details.
[[noreturn]] void RaiseSystemError(int code, const std::string& source, const std::string& path);

}  // namespace qmx
