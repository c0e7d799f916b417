// Writes to a descriptor that a terminal, a log or another process reads. Allocates no memory: signal handlers call it.
#pragma once

#include <string_view>

namespace qmx {

// Writes the whole text, and gives up when nobody can read the rest.
void WriteAll(int descriptor, std::string_view text) noexcept;

// Writes the whole text in one call of the system, so that texts that several processes append to one file do not mix.
// Returns an errno value, or 0. A text that was cut short is ENOSPC.
int WriteAtOnce(int descriptor, std::string_view text) noexcept;

}  // namespace qmx
