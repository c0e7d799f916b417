// The columns that a copy by change does not bring.
//
// The ERP's audit trail lacks them, so a copy by change empties them or keeps their old values
// (docs/changed-copies.md).
#pragma once

#include "schema/local_tables.h"

namespace qmx {

// Returns the table's definition without these columns.
LocalTable WithoutColumnsNotBrought(LocalTable table);

}  // namespace qmx
