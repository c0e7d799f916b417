#include "platform/com/variant_types.h"

#include <gtest/gtest.h>

namespace qmx::test {
namespace {

TEST(AVariantType, HasItsUsualName) {
  EXPECT_EQ(TypeName(VT_I4), "VT_I4");
  EXPECT_EQ(TypeName(VT_BYREF | VT_BSTR), "VT_BYREF|VT_BSTR");
  EXPECT_EQ(TypeName(VT_ARRAY | VT_VARIANT), "VT_ARRAY|VT_VARIANT");
  EXPECT_EQ(TypeName(VT_BYREF | VT_ARRAY | VT_UI1), "VT_BYREF|VT_ARRAY|VT_UI1");
}

TEST(AVariantType, ThatIsUnknownIsItsNumber) { EXPECT_EQ(TypeName(77), "77"); }

TEST(AVariantType, HasTheSizeOfWhatItsReferenceRefersTo) {
  for (const VARTYPE type : {VT_I1, VT_UI1}) EXPECT_EQ(SizeOf(type), 1u) << type;
  for (const VARTYPE type : {VT_I2, VT_UI2, VT_BOOL}) EXPECT_EQ(SizeOf(type), 2u) << type;
  for (const VARTYPE type : {VT_I4, VT_UI4, VT_INT, VT_UINT, VT_R4, VT_ERROR}) EXPECT_EQ(SizeOf(type), 4u) << type;
  for (const VARTYPE type : {VT_I8, VT_UI8, VT_R8, VT_CY, VT_DATE, VT_BSTR, VT_DISPATCH, VT_UNKNOWN})
    EXPECT_EQ(SizeOf(type), 8u) << type;
}

TEST(AVariantType, WithoutSimpleContentHasNoSize) {
  EXPECT_EQ(SizeOf(VT_EMPTY), 0u);
  EXPECT_EQ(SizeOf(VT_NULL), 0u);
  EXPECT_EQ(SizeOf(VT_VARIANT), 0u);
  EXPECT_EQ(SizeOf(VT_DECIMAL), 0u);
  EXPECT_EQ(SizeOf(VT_ARRAY | VT_I4), 0u);
  EXPECT_EQ(SizeOf(77), 0u);
}

}  // namespace
}  // namespace qmx::test
