#include "fuzz/plain_numbers.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace qmx::fuzz {
namespace {

constexpr int kMostDigits = 15;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t SkipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && IsDigit(text[at])) ++at;
  return at;
}

std::size_t SkipSign(std::string_view text, std::size_t at) {
  return at < text.size() && (text[at] == '+' || text[at] == '-') ? at + 1 : at;
}

bool IsNumber(std::string_view text) {
  const std::size_t start = SkipSign(text, 0);
  std::size_t at = SkipDigits(text, start);
  std::size_t digits = at - start;
  if (at < text.size() && text[at] == '.') {
    const std::size_t decimals = at + 1;
    at = SkipDigits(text, decimals);
    digits += at - decimals;
  }
  if (digits == 0) return false;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    const std::size_t exponent = SkipSign(text, at + 1);
    at = SkipDigits(text, exponent);
    if (at == exponent) return false;
  }
  return at == text.size();
}

// 0.d1d2d3... times ten to `power`, without zeros at either end. Zero has no digits.
struct Digits {
  std::string digits;
  int power = 0;
};

Digits DigitsOf(double value) {
  char text[40];
  for (int count = 1; count <= kMostDigits; ++count) {
    std::snprintf(text, sizeof text, "%.*e", count - 1, std::fabs(value));
    if (std::strtod(text, nullptr) == std::fabs(value)) break;
  }
  Digits result;
  char* c = text;
  for (; *c != 'e'; ++c) {
    if (IsDigit(*c)) result.digits += *c;
  }
  result.power = std::atoi(c + 1) + 1;
  while (!result.digits.empty() && result.digits.back() == '0') result.digits.pop_back();
  return result;
}

std::string Zeros(int count) { return std::string(static_cast<std::size_t>(count), '0'); }

}  // namespace

std::optional<double> PlainNumber(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  if (!IsNumber(text)) return std::nullopt;
  return std::strtod(std::string(text).c_str(), nullptr);
}

std::string PlainNumberText(double value) {
  const auto [digits, power] = DigitsOf(value);
  if (digits.empty()) return "0";
  const int count = static_cast<int>(digits.size());
  std::string text = value < 0 ? "-" : "";
  if (power > kMostDigits || power < -3) {
    char exponent[16];
    std::snprintf(exponent, sizeof exponent, "E%+03d", power - 1);
    return text + digits[0] + (count > 1 ? "." + digits.substr(1) : "") + exponent;
  }
  if (power <= 0) return text + "0." + Zeros(-power) + digits;
  if (count <= power) return text + digits + Zeros(power - count);
  return text + digits.substr(0, static_cast<std::size_t>(power)) + "." +
         digits.substr(static_cast<std::size_t>(power));
}

double PlainRoundDecimals(double value, int decimals) {
  const auto [digits, power] = DigitsOf(value);
  const int kept = power + decimals;
  if (digits.empty() || kept > kMostDigits) return value;  // there is nothing behind the last decimal
  if (kept < 0) return 0;
  const int dropped = static_cast<int>(digits.size()) - kept;
  std::int64_t whole = std::atoll(digits.c_str());
  if (dropped > 0) {
    std::int64_t unit = 1;
    for (int i = 0; i < dropped; ++i) unit *= 10;
    const std::int64_t rest = whole % unit;
    whole /= unit;
    if (rest * 2 > unit || (rest * 2 == unit && whole % 2 != 0)) ++whole;
  }
  const int exponent = dropped > 0 ? -decimals : power - static_cast<int>(digits.size());
  const double rounded = std::strtod((std::to_string(whole) + "e" + std::to_string(exponent)).c_str(), nullptr);
  return value < 0 && rounded != 0 ? -rounded : rounded;
}

double PlainRound(double value) {
  const double below = std::floor(value);
  const double rest = value - below;  // exact
  const bool up = rest > 0.5 || (rest == 0.5 && std::fmod(below, 2) != 0);
  return up ? below + 1 : below;
}

}  // namespace qmx::fuzz
