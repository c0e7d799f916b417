#include "platform/com/component_call.h"

#include <gtest/gtest.h>
#include <oleauto.h>

#include "platform/com/bstr.h"

namespace qmx::test {
namespace {

// A component's call with one variable, where the user writes decimals with a comma.
class AVariableOfAComponent : public testing::Test {
 protected:
  AVariableOfAComponent() {
    EXPECT_NE(GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, before_, 8), 0);
    EXPECT_TRUE(SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, L","));
  }
  ~AVariableOfAComponent() override { SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, before_); }

  // Writes a value into the variable, as the program does.
  void Write(VARTYPE type, void* variable, const Variant& value) {
    VARIANT reference{};
    reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
    reference.byref = variable;
    DISPPARAMS parameters{&reference, nullptr, 1, 0};
    ComponentCall call(parameters);
    call.Arguments()[0].Write(value);
    call.WriteBack();
  }

  wchar_t before_[8] = {};
};

TEST_F(AVariableOfAComponent, TakesANumberFromATextInEveryLocale) {
  double number = 0;
  Write(VT_R8, &number, "12.5");
  EXPECT_EQ(number, 12.5);
}

TEST_F(AVariableOfAComponent, TakesATextFromANumberInEveryLocale) {
  BSTR text = NewBstr("before");
  Write(VT_BSTR, &text, 12.5);
  EXPECT_EQ(Utf8(View(text)), "12.5");
  Write(VT_BSTR, &text, true);
  EXPECT_EQ(Utf8(View(text)), "True");
  SysFreeString(text);
}

}  // namespace
}  // namespace qmx::test
