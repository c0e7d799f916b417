// Whether a text is one JSON value, by RFC 8259.
#pragma once

#include <string_view>

namespace qmx::fuzz {

bool IsJson(std::string_view text);

}  // namespace qmx::fuzz
