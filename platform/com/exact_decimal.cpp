#include "platform/com/exact_decimal.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace qmx {
namespace {

constexpr int kCurrencyDecimals = 4;

// The decimal digits of a 96-bit number, whose lowest 32 bits come first. Zero has none.
std::string Digits(std::array<std::uint32_t, 3> number) {
  std::string reversed;
  while (number[0] != 0 || number[1] != 0 || number[2] != 0) {
    std::uint64_t rest = 0;
    for (std::size_t i = number.size(); i-- > 0;) {
      const std::uint64_t part = rest << 32 | number[i];
      number[i] = static_cast<std::uint32_t>(part / 10);
      rest = part % 10;
    }
    reversed += static_cast<char>('0' + rest);
  }
  std::reverse(reversed.begin(), reversed.end());
  return reversed;
}

std::string Text(bool isNegative, std::string digits, std::size_t decimals) {
  if (digits.empty()) return "0";
  if (digits.size() <= decimals) digits.insert(0, decimals + 1 - digits.size(), '0');
  if (decimals > 0) {
    digits.insert(digits.size() - decimals, 1, '.');
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.back() == '.') digits.pop_back();
  }
  return isNegative ? "-" + digits : digits;
}

}  // namespace

std::string DecimalText(const DECIMAL& number) {
  return Text((number.sign & DECIMAL_NEG) != 0,
              Digits({static_cast<std::uint32_t>(number.Lo64), static_cast<std::uint32_t>(number.Lo64 >> 32),
                      static_cast<std::uint32_t>(number.Hi32)}),
              number.scale);
}

std::string CurrencyText(const CY& amount) {
  const bool isNegative = amount.int64 < 0;
  const auto bits = static_cast<std::uint64_t>(amount.int64);
  const std::uint64_t size = isNegative ? 0 - bits : bits;
  return Text(isNegative, Digits({static_cast<std::uint32_t>(size), static_cast<std::uint32_t>(size >> 32), 0}),
              kCurrencyDecimals);
}

}  // namespace qmx
