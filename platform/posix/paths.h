// Path texts with "\" and what they are on this machine.
//
// "\" is "/". The drive prefix "C:", in either case, is the folder $QMX_SYSTEM_DRIVE, else the user's home, else "/".
// No other drive exists here: such a path stays a relative one, and is told as not found.
#pragma once

#include <string>
#include <string_view>

namespace qmx {

std::string NativePath(std::string_view path);
std::string PathText(std::string_view nativePath);

}  // namespace qmx
