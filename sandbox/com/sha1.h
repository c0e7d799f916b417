// SHA-1, of which UUIDs of version 5 are made. Not for secrets.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace orvan {

std::array<std::uint8_t, 20> Sha1(std::string_view bytes);

}  // namespace orvan
