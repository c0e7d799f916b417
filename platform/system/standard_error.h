// Writes to standard error without allocating memory, for signal handlers and exit handlers on any thread.
#pragma once

#include <initializer_list>
#include <string_view>

namespace qmx {

// Writes the pieces one after the other. On a terminal they replace the progress line. Keeps errno.
void WriteToStandardError(std::initializer_list<std::string_view> pieces) noexcept;

}  // namespace qmx
