// Failures of Windows, as errno values and as texts.
#pragma once

#include <cstdint>
#include <string>

namespace qmx {

// `code` is a value of GetLastError. EIO for a code that has no better errno value.
int ErrnoOf(std::uint32_t code) noexcept;

// The errno value of the calling thread's last failure.
int LastErrno() noexcept;

// The message of Windows, without a line end: "The specified module could not be found. (126)".
std::string SystemMessage(std::uint32_t code);

}  // namespace qmx
