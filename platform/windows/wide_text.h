// Texts of the program are UTF-8, those of Windows UTF-16.
#pragma once

#include <string>
#include <string_view>

namespace qmx {

// What is not valid becomes U+FFFD.
std::wstring WideText(std::string_view text);
std::string NarrowText(std::wstring_view text);

}  // namespace qmx
