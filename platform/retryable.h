// Which errors mean that the database took the work back wholly, and asks to try it again.
//
// The errors of every system are told apart here, and nowhere else. docs/guarantees.md lists them.
#pragma once

#include "platform/error.h"

namespace qmx {

// Whether nothing of the statement, or of the transaction that it was in, is saved, and another attempt may succeed.
bool AsksToTryAgain(const Error& error);

}  // namespace qmx
