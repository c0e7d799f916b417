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
  EXPECT_EQ(SizeOf(VT_UI1), 1u);
  EXPECT_EQ(SizeOf(VT_BOOL), 2u);
  EXPECT_EQ(SizeOf(VT_INT), 4u);
  EXPECT_EQ(SizeOf(VT_CY), 8u);
  EXPECT_EQ(SizeOf(VT_BSTR), sizeof(void*));
}

TEST(AVariantType, WithoutSimpleContentHasNoSize) {
  EXPECT_EQ(SizeOf(VT_EMPTY), 0u);
  EXPECT_EQ(SizeOf(VT_VARIANT), 0u);
  EXPECT_EQ(SizeOf(VT_ARRAY | VT_I4), 0u);
  EXPECT_EQ(SizeOf(77), 0u);
}

}  // namespace
}  // namespace qmx::test
