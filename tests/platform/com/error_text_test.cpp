// What a component says of a failure beside its result.
#include "platform/com/error_text.h"

#include <gtest/gtest.h>

#include "platform/com/objects.h"
#include "platform/components.h"
#include "platform/error.h"
#include "tests/platform/com/registered_class.h"
#include "tests/platform/com/stub_component.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

Error ErrorOfCall(StubComponent::Answer answer) {
  const auto component = StubComponent::Make(std::move(answer));
  return Raised([&] { ObjectFrom(component.Get()).Call("ask"); });
}

TEST(AnErrorText, IsADetailOfTheCallThatFailed) {
  const Error error = ErrorOfCall([](const StubComponent::Call&) {
    SetErrorText(L"The licence of Z\u00FCrich has ended.");
    return E_ACCESSDENIED;
  });
  EXPECT_EQ(error.Number(), E_ACCESSDENIED);
  EXPECT_EQ(error.DetailOf("component's text"), "The licence of Z\xC3\xBCrich has ended.");
}

TEST(AnErrorText, OfAnEarlierCallIsNoDetail) {
  SetErrorText(L"An earlier failure.");
  const Error error = ErrorOfCall([](const StubComponent::Call&) { return E_ACCESSDENIED; });
  EXPECT_EQ(error.DetailOf("component's text"), "");
}

TEST(AnErrorText, IsNoDetailBesideAnException) {
  const Error error = ErrorOfCall([](const StubComponent::Call& call) {
    SetErrorText(L"Another text.");
    call.exception->bstrDescription = SysAllocString(L"The record is locked.");
    return DISP_E_EXCEPTION;
  });
  EXPECT_EQ(error.Description(), "The record is locked.");
  EXPECT_EQ(error.DetailOf("component's text"), "");
}

TEST(AnErrorText, IsTakenOnce) {
  SetErrorText(L"There is no licence.");
  EXPECT_EQ(TakeErrorText(), "There is no licence.");
  EXPECT_EQ(TakeErrorText(), "");
}

TEST(AnErrorText, MayBeForgotten) {
  SetErrorText(L"There is no licence.");
  ForgetErrorText();
  EXPECT_EQ(TakeErrorText(), "");
}

}  // namespace
}  // namespace qmx::test
