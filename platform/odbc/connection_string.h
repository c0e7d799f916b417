// Connection texts as ODBC reads them: values may be braced, quotes mean nothing, the first of two equal keywords
// counts.
#pragma once

#include <string>
#include <string_view>

namespace qmx {

// Returns the text with one keyword's value replaced, or with the keyword appended. The rest is unchanged.
std::string WithOdbcKeyword(std::string_view text, std::string_view keyword, std::string_view value);

std::string WithoutOdbcKeyword(std::string_view text, std::string_view keyword);  // removes the last one

// Returns the value of the last such keyword, without its braces; "" when there is none.
std::string OdbcKeyword(std::string_view text, std::string_view keyword);

}  // namespace qmx
