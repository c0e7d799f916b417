// Converts path texts with "\" to this machine's paths.
//
// On a POSIX system "\" becomes "/". The drive prefix "C:", in either case, becomes the folder $QMX_SYSTEM_DRIVE, else
// the user's home, else "/". A path with another drive stays a relative path, which is reported as not found.
#pragma once

#include <string>
#include <string_view>

namespace qmx {

std::string NativePath(std::string_view path);
std::string PathText(std::string_view nativePath);

}  // namespace qmx
