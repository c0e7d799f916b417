// Calendars as one SVG picture, one below the other, for the screen, the printer or a web page.
//
// The picture refers to no other file and needs no script and no special font. Pointing at an interval shows its times.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/calendar/picture.h"

namespace qmx {

std::string SvgPicture(const std::vector<CalendarPicture>& pictures);

}  // namespace qmx
