// SQLite's result codes as errors with the classic numbers.
#pragma once

#include <string>

#include "platform/error.h"

struct sqlite3;

namespace qmx {

// Returns the error of the handle's last call: SQLite's own message, and the code's name as the detail "code".
Error SqliteError(sqlite3* handle);

// The same for a code without a handle.
Error SqliteError(int extendedCode, const std::string& message);

}  // namespace qmx
