#include "platform/com/objects.h"

#include <gtest/gtest.h>

#include "platform/com/known_objects.h"
#include "platform/components.h"
#include "platform/error.h"
#include "tests/platform/com/host_object.h"
#include "tests/platform/com/stub_component.h"

namespace qmx::test {
namespace {

std::string ProgIdOf(const Object& object) {
  Error error(1, "", "");
  object.Target()->Describe(error, "x");
  return error.DetailOf("progid");
}

TEST(AnObjectOfAComponent, ThatComesBackIsTheSameObject) {
  const auto component = StubComponent::Make({});
  const Object object = ObjectFrom(component.Get());
  EXPECT_EQ(ObjectFrom(component.Get()), object);
}

TEST(AnObjectOfAComponent, IsPassedAsTheInterfaceThatItWas) {
  const auto component = StubComponent::Make({});
  EXPECT_EQ(DispatchOf(ObjectFrom(component.Get())).Get(), component.Get());
}

TEST(AnObjectOfAComponent, ThatWasReleasedIsForgotten) {
  const auto component = StubComponent::Make({});
  const Dispatch* const first = ObjectFrom(component.Get(), "A.First").Target().get();
  EXPECT_NE(first, nullptr);
  const Object again = ObjectFrom(component.Get(), "A.Second");
  EXPECT_EQ(ProgIdOf(again), "A.Second");
}

TEST(AnObjectOfAComponent, OfSeveralProgIdsHasThatOfEachCreation) {
  const auto component = StubComponent::Make({});
  Object first = ObjectFrom(component.Get(), "A.First");
  const Object second = ObjectFrom(component.Get(), "A.Second");
  EXPECT_EQ(ProgIdOf(first), "A.First");
  EXPECT_EQ(ProgIdOf(second), "A.Second");
  EXPECT_EQ(ObjectFrom(component.Get()), second);  // a call returned it
  first = Object();
  EXPECT_EQ(ObjectFrom(component.Get()), second);
}

TEST(ObjectsOfAComponent, ThatWereReleasedTakeNoMemory) {
  const auto component = StubComponent::Make({});
  const std::size_t before = KnownObjects::Count();
  Object object = ObjectFrom(component.Get());
  EXPECT_EQ(KnownObjects::Count(), before + 1);
  object = Object();
  EXPECT_EQ(KnownObjects::Count(), before);
}

TEST(ObjectsOfAComponent, WithoutAnIdentityAreCalledAndKnown) {
  VARIANT answer{};
  answer.vt = VT_I4;
  answer.lVal = 42;
  const auto component = StubComponent::Giving(answer);
  component->hasIdentity = false;
  const Object object = ObjectFrom(component.Get());
  EXPECT_EQ(object.Call("ask"), Variant(42));
  EXPECT_EQ(ObjectFrom(component.Get()), object);
}

// A Java bridge or a control may give one object several interfaces with members of their own.
class SeveralInterfaces : public testing::Test {
 protected:
  SeveralInterfaces() {
    second_->outer = first_.Get();
    third_->outer = first_.Get();
  }

  static VARIANT Number(LONG number) {
    VARIANT value{};
    value.vt = VT_I4;
    value.lVal = number;
    return value;
  }

  ComPtr<StubComponent> first_ = StubComponent::Giving(Number(1));
  ComPtr<StubComponent> second_ = StubComponent::Giving(Number(2));
  ComPtr<StubComponent> third_ = StubComponent::Giving(Number(3));
};

TEST_F(SeveralInterfaces, OfOneObjectAreEachCalled) {
  const Object first = ObjectFrom(first_.Get());
  const Object second = ObjectFrom(second_.Get());
  EXPECT_EQ(first.Call("ask"), Variant(1));
  EXPECT_EQ(second.Call("ask"), Variant(2));
  EXPECT_EQ(ObjectFrom(third_.Get()).Call("ask"), Variant(3));
}

TEST_F(SeveralInterfaces, OfOneObjectAreEachPassedAsTheyWere) {
  const Object first = ObjectFrom(first_.Get());
  const Object second = ObjectFrom(second_.Get());
  EXPECT_EQ(DispatchOf(second).Get(), second_.Get());
  EXPECT_EQ(ObjectFrom(first_.Get()), first);
  EXPECT_EQ(ObjectFrom(second_.Get()), second);
  EXPECT_NE(first, second);
}

TEST_F(SeveralInterfaces, OfOneObjectAreForgottenOneByOne) {
  const std::size_t before = KnownObjects::Count();
  Object first = ObjectFrom(first_.Get());
  Object second = ObjectFrom(second_.Get());
  first = Object();
  EXPECT_EQ(ObjectFrom(second_.Get()), second);
  second = Object();
  EXPECT_EQ(KnownObjects::Count(), before);
}

TEST(TwoObjectsOfAComponent, Differ) {
  const auto one = StubComponent::Make({});
  const auto other = StubComponent::Make({});
  EXPECT_NE(ObjectFrom(one.Get()), ObjectFrom(other.Get()));
}

TEST(AnObjectOfTheProgram, ThatComesBackIsTheSameObject) {
  const Object object = HostObject::Make();
  const ComPtr<IDispatch> dispatch = DispatchOf(object);
  EXPECT_EQ(ObjectFrom(dispatch.Get()), object);
}

TEST(AnObjectOfTheProgram, HasOneInterfaceAsLongAsAComponentHoldsIt) {
  const Object object = HostObject::Make();
  const ComPtr<IDispatch> dispatch = DispatchOf(object);
  EXPECT_EQ(DispatchOf(object).Get(), dispatch.Get());
}

TEST(AnObjectOfTheProgram, LivesAsLongAsAComponentHoldsIt) {
  Object object = HostObject::Make();
  const std::weak_ptr<Dispatch> target = object.Target();
  ComPtr<IDispatch> dispatch = DispatchOf(object);
  object = Object();
  EXPECT_FALSE(target.expired());
  dispatch = {};
  EXPECT_TRUE(target.expired());
}

TEST(NoObject, IsANullInterfaceBothWays) {
  EXPECT_FALSE(ObjectFrom(nullptr));
  EXPECT_FALSE(DispatchOf(Object()));
}

}  // namespace
}  // namespace qmx::test
