// Whether an ODBC error means that the database refused the work, or that the work may be done.
#pragma once

#include "platform/error.h"
#include "platform/odbc/dialect.h"

namespace qmx {

// Whether the database itself refused a commit, so that nothing of the transaction is saved.
bool IsRefusal(const Error& commitError, Refusals signs);

// Whether a statement may be done or not: its connection is lost, or its commit could not be finished.
bool IsLoss(const Error& error, Refusals signs);

}  // namespace qmx
