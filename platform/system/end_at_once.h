// Ends the process without any handler: none of exit, of libraries, or of the guard of exits (exit_guard.h).
#pragma once

namespace qmx {

// Any thread may call it, whatever the others do or hold. Nothing that is buffered is written.
[[noreturn]] void EndAtOnce(int status) noexcept;

}  // namespace qmx
