// Connection texts as ODBC reads them: values may be braced, quotes mean nothing, the first of two equal keywords
// holds.
#pragma once

#include <string>
#include <string_view>

namespace qmx {

// The text with one keyword's value replaced, or with the keyword behind it where it did not stand there. The rest
// stays as it was written.
std::string WithOdbcKeyword(std::string_view text, std::string_view keyword, std::string_view value);

std::string WithoutOdbcKeyword(std::string_view text, std::string_view keyword);  // the last such one

// The value of the last such keyword, without its braces; "" when there is none.
std::string OdbcKeyword(std::string_view text, std::string_view keyword);

}  // namespace qmx
