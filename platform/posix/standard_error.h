// Standard error, for signal handlers and exit handlers: written without memory of their own, on any thread.
#pragma once

#include <initializer_list>
#include <string_view>

namespace qmx {

// Writes the pieces one after the other, on a terminal in the place of a progress line. Leaves errno as it was.
void WriteToStandardError(std::initializer_list<std::string_view> pieces) noexcept;

}  // namespace qmx
