// Ends the process with status 2 and a line on standard error where anything but main ends it: exit or quick_exit,
// called by a component on any thread. _exit cannot be caught.
#pragma once

namespace qmx {

// To be called first in main, since exit handlers run in reverse order: this one has the last word. A process that a
// component forks is not guarded. Raises 7.
void GuardExit();

// main returns what this returns. From here on the process ends as main wants it.
int EndOfMain(int status) noexcept;

}  // namespace qmx
