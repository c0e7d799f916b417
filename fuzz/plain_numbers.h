// Numbers as the product must read, round and write them, by the C library and by exact decimal arithmetic.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qmx::fuzz {

// A text that is one number literal, read by strtod; nothing for any other text.
std::optional<double> PlainNumber(std::string_view text);

// A finite number as text: the fewest digits that read back as it, at most 15.
std::string PlainNumberText(double value);

// Rounds that text to so many decimals, halves to even.
double PlainRoundDecimals(double value, int digits);

// The nearest whole number, halves to even. The number must be smaller than 2^53.
double PlainRound(double value);

}  // namespace qmx::fuzz
