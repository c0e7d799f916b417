#include "platform/com/exact_decimal.h"

#include <gtest/gtest.h>

namespace qmx::test {
namespace {

std::string Decimal(ULONG high, ULONGLONG low, BYTE scale, bool isNegative = false) {
  DECIMAL number{};
  number.Hi32 = high;
  number.Lo64 = low;
  number.scale = scale;
  number.sign = isNegative ? DECIMAL_NEG : 0;
  return DecimalText(number);
}

std::string Currency(LONGLONG tenThousandths) {
  CY amount;
  amount.int64 = tenThousandths;
  return CurrencyText(amount);
}

TEST(ADecimal, IsAnExactText) {
  EXPECT_EQ(Decimal(0, 12345, 2), "123.45");
  EXPECT_EQ(Decimal(0, 12345, 0), "12345");
  EXPECT_EQ(Decimal(0, 12345, 2, true), "-123.45");
}

TEST(ADecimal, HasAZeroBeforeThePoint) {
  EXPECT_EQ(Decimal(0, 5, 1), "0.5");
  EXPECT_EQ(Decimal(0, 5, 28), "0.0000000000000000000000000005");
}

TEST(ADecimal, HasNoZerosAtTheEndOfItsFraction) {
  EXPECT_EQ(Decimal(0, 12300, 4), "1.23");
  EXPECT_EQ(Decimal(0, 12000, 3), "12");
  EXPECT_EQ(Decimal(0, 12000, 0), "12000");
}

TEST(ADecimal, OfZeroHasNoSign) { EXPECT_EQ(Decimal(0, 0, 5, true), "0"); }

TEST(ADecimal, KeepsAllOfItsDigits) {
  EXPECT_EQ(Decimal(0xFFFFFFFF, 0xFFFFFFFFFFFFFFFF, 0), "79228162514264337593543950335");
  EXPECT_EQ(Decimal(0xFFFFFFFF, 0xFFFFFFFFFFFFFFFF, 28), "7.9228162514264337593543950335");
  EXPECT_EQ(Decimal(1, 0, 0), "18446744073709551616");
}

TEST(ACurrencyAmount, IsAnExactText) {
  EXPECT_EQ(Currency(123400), "12.34");
  EXPECT_EQ(Currency(-1), "-0.0001");
  EXPECT_EQ(Currency(0), "0");
  EXPECT_EQ(Currency(INT64_MAX), "922337203685477.5807");
  EXPECT_EQ(Currency(INT64_MIN), "-922337203685477.5808");
}

}  // namespace
}  // namespace qmx::test
