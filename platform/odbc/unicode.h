// Texts on their way through ODBC, whose wide characters are UTF-16.
//
// What is no UTF-8 is error 13; half a surrogate pair, which no well-behaved driver gives, becomes U+FFFD.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <string>
#include <string_view>

namespace qmx {

using WideText = std::basic_string<SQLWCHAR>;

WideText ToWide(std::string_view utf8);
void ToWide(std::string_view utf8, WideText& wide);  // into a text whose memory is used again
void RequireUtf8(std::string_view text);
std::string FromWide(std::basic_string_view<SQLWCHAR> wide);

}  // namespace qmx
