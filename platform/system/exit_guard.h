// Ends the process with status 2 and a line on standard error if anything but main ends it: exit or quick_exit, called
// by a component on any thread. On a POSIX system _exit cannot be caught. Windows
// itself may end the process after a key of the console.
#pragma once

namespace qmx {

// Call it first in main: exit handlers run in reverse order, and this one must run last. A process that a component
// forks is not guarded. Raises 7.
void GuardExit();

// Turns the guard off and returns the status for main to return.
int EndOfMain(int status) noexcept;

}  // namespace qmx
