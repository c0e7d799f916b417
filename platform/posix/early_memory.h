// Memory that runs out before main begins: the process ends with status 2 and a sentence, not by an abort.
//
// Constants are made then, outside of every handler. Linking this is enough.
#pragma once

namespace qmx {

// From here on exceptions are main's own affair: one that nobody catches aborts.
void MainHasBegun() noexcept;

}  // namespace qmx
