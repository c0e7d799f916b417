// Turns ODBC's diagnostic records into an error with the classic number.
//
// The description holds every diagnostic record: its text, SQLSTATE and native code, followed by what to do,
// if that is known. The first record's SQLSTATE and native code are the details "SQLSTATE" and "native code".
#pragma once

#include <sql.h>

#include <string>
#include <vector>

#include "platform/error.h"

namespace qmx {

struct Diagnostic {
  std::string state;
  SQLINTEGER native = 0;
  std::string text;  // without the bracketed names that driver manager and driver put before it
};

// Reads each record once: with some drivers the driver manager crashes at a second reading.
std::vector<Diagnostic> ReadDiagnostics(SQLSMALLINT handleType, SQLHANDLE handle);

Error OdbcError(const std::vector<Diagnostic>& diagnostics);
Error OdbcError(SQLSMALLINT handleType, SQLHANDLE handle);

}  // namespace qmx
