// Writes to a descriptor that a terminal, a log or another process reads.
#pragma once

#include <string_view>

namespace qmx {

// Writes the whole text, and gives up when nobody can read the rest. Allocates no memory: signal handlers call it.
void WriteAll(int descriptor, std::string_view text) noexcept;

}  // namespace qmx
