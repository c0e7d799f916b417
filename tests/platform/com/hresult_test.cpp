#include "platform/com/hresult.h"

#include <gmock/gmock.h>

namespace qmx::test {
namespace {

TEST(AResult, IsShownInHexadecimal) {
  EXPECT_EQ(Hexadecimal(static_cast<HRESULT>(0x80010108)), "0x80010108");
  EXPECT_EQ(Hexadecimal(S_FALSE), "0x00000001");
}

TEST(AResult, HasTheSystemsMessageWithoutAFullStop) {
  EXPECT_THAT(SystemMessage(E_ACCESSDENIED), testing::AnyOf("Access denied", "Access is denied"));
}

// The system's text is "%1 is not a valid Win32 application."
TEST(AResult, HasTheSystemsMessageWithItsPlaceholders) {
  EXPECT_THAT(SystemMessage(static_cast<HRESULT>(0x800700C1)),
              testing::AnyOf(testing::HasSubstr("%1"), "Bad EXE format for"));
}

TEST(AResult, OfWhichTheSystemKnowsNothingHasNoMessage) {
  const auto unknown = static_cast<HRESULT>(0x8FFF1234);
  EXPECT_EQ(SystemMessage(unknown), "");
  EXPECT_EQ(DescribeHresult(unknown), "0x8FFF1234");
}

TEST(AResult, IsDescribedByBoth) {
  EXPECT_EQ(DescribeHresult(E_ACCESSDENIED), "0x80070005 (" + SystemMessage(E_ACCESSDENIED) + ")");
}

TEST(AResult, OfTheClassicFacilityIsItsLowHalf) {
  EXPECT_EQ(NumberOf(static_cast<HRESULT>(0x800A000D)), 13);
  EXPECT_EQ(NumberOf(static_cast<HRESULT>(0x800AFFFF)), 65535);
}

TEST(AResult, OfACallByNameIsItsClassicNumber) {
  EXPECT_EQ(NumberOf(DISP_E_MEMBERNOTFOUND), 438);
  EXPECT_EQ(NumberOf(DISP_E_UNKNOWNNAME), 438);
  EXPECT_EQ(NumberOf(DISP_E_BADPARAMCOUNT), 450);
  EXPECT_EQ(NumberOf(DISP_E_PARAMNOTOPTIONAL), 450);
  EXPECT_EQ(NumberOf(DISP_E_TYPEMISMATCH), 13);
  EXPECT_EQ(NumberOf(DISP_E_BADVARTYPE), 13);
  EXPECT_EQ(NumberOf(DISP_E_OVERFLOW), 6);
  EXPECT_EQ(NumberOf(E_OUTOFMEMORY), 7);
}

TEST(AResult, OfAnotherKindIsItsOwnNumber) {
  EXPECT_EQ(NumberOf(E_FAIL), -2147467259);
  EXPECT_EQ(NumberOf(static_cast<HRESULT>(0x80010108)), -2147417848);
}

TEST(ANumber, OfAClassicErrorIsAResultOfThatFacility) {
  EXPECT_EQ(ResultOf(13), static_cast<HRESULT>(0x800A000D));
  EXPECT_EQ(ResultOf(65535), static_cast<HRESULT>(0x800AFFFF));
}

TEST(ANumber, ThatIsAResultStaysOne) { EXPECT_EQ(ResultOf(-2147217900), static_cast<HRESULT>(0x80040E14)); }

TEST(ANumber, ForWhichNoResultStandsIsAFailure) {
  EXPECT_EQ(ResultOf(65536), E_FAIL);
  EXPECT_EQ(ResultOf(0), E_FAIL);
}

}  // namespace
}  // namespace qmx::test
