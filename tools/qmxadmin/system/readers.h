// Who reads what this program writes.
#pragma once

namespace qmx {

// Returns whether the descriptor is a pipe whose reader has closed it, as "head" does. Ask after a failed write: to
// find out, this may write a line end.
bool NobodyReads(int descriptor);

}  // namespace qmx
