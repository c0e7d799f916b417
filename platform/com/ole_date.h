// Date-times of COM: days since 1899-12-30, with the time of day as the fraction.
//
// The fraction counts forward from midnight on negative days too: -1.25 is 1899-12-29 06:00.
#pragma once

#include "platform/datetime.h"

namespace qmx {

// Rounds to the nearest second. Raises 6 outside the years 100 to 9999.
DateTime FromOleDate(double days);

double ToOleDate(DateTime moment);

}  // namespace qmx
