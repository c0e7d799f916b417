// Calendars as an SVG picture, one below the other: to be looked at, printed, or put on a page.
//
// It needs nothing besides itself, no script and no font of its own. Every interval says its times when it is pointed
// at.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/calendar/picture.h"

namespace qmx {

std::string SvgPicture(const std::vector<CalendarPicture>& pictures);

}  // namespace qmx
