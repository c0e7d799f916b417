// Handles memory that runs out before main begins: the process ends with status 2 and a message, not by an abort.
//
// Constants are constructed then, outside of every handler. Linking this is enough.
#pragma once

namespace qmx {

// From now on main handles exceptions: one that nothing catches aborts.
void MainHasBegun() noexcept;

}  // namespace qmx
