// Converts texts from and to ODBC's wide characters, which are UTF-16.
//
// Invalid UTF-8 is error 13. Half a surrogate pair, which no correct driver returns, becomes U+FFFD.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <string>
#include <string_view>

namespace qmx {

using WideText = std::basic_string<SQLWCHAR>;

WideText ToWide(std::string_view utf8);
void ToWide(std::string_view utf8, WideText& wide);  // reuses the memory of `wide`
void RequireUtf8(std::string_view text);
std::string FromWide(std::basic_string_view<SQLWCHAR> wide);

}  // namespace qmx
