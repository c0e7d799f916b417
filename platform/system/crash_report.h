// Writes a line on standard error when the process crashes. The signal then has its previous effect: by default it ends
// the process and leaves a core file.
#pragma once

namespace qmx {

// For SIGSEGV, SIGABRT, SIGBUS, SIGFPE and SIGILL, and for the exceptions of Windows. The calling thread gets an
// alternate stack, so that an overflow of its stack is reported too. On Windows a thread with a stack of its own writes
// the line.
void ReportCrashes() noexcept;

}  // namespace qmx
