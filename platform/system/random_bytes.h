// Random bytes of the operating system.
#pragma once

#include <span>

namespace qmx {

// Returns false if the system gives none.
bool FillWithRandomBytes(std::span<unsigned char> bytes) noexcept;

}  // namespace qmx
