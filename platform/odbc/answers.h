// What an error of ODBC says about the work that was asked for: refused, or perhaps done.
#pragma once

#include "platform/error.h"
#include "platform/odbc/dialect.h"

namespace qmx {

// Whether the database itself refused a commit, so that nothing of the transaction is saved.
bool IsRefusal(const Error& commitError, Refusals signs);

// Whether the connection is gone, so that what was asked for may be done or not.
bool IsLoss(const Error& error);

}  // namespace qmx
