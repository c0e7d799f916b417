#include "platform/com/com_ptr.h"

#include <gtest/gtest.h>

#include "tests/platform/com/stub_component.h"

namespace qmx::test {
namespace {

TEST(AComPointer, CountsItsReferences) {
  const auto component = StubComponent::Make({});
  EXPECT_EQ(component->references, 1u);
  {
    const ComPtr<StubComponent> copy = component;
    EXPECT_EQ(component->references, 2u);
    const auto shared = ComPtr<StubComponent>::Sharing(component.Get());
    EXPECT_EQ(component->references, 3u);
  }
  EXPECT_EQ(component->references, 1u);
}

TEST(AComPointer, MovesItsReference) {
  auto component = StubComponent::Make({});
  StubComponent* const pointer = component.Get();
  ComPtr<StubComponent> moved = std::move(component);
  EXPECT_EQ(moved.Get(), pointer);
  EXPECT_EQ(pointer->references, 1u);
  moved = ComPtr<StubComponent>(moved);  // assigned to itself
  EXPECT_EQ(pointer->references, 1u);
}

TEST(AComPointer, ReleasesWhatItIsAssignedOver) {
  const int before = StubComponent::living;
  auto component = StubComponent::Make({});
  component = StubComponent::Make({});
  EXPECT_EQ(StubComponent::living, before + 1);
  component = {};
  EXPECT_EQ(StubComponent::living, before);
  EXPECT_FALSE(component);
}

TEST(AComPointer, HandsItsReferenceOver) {
  auto component = StubComponent::Make({});
  StubComponent* const pointer = component.Detach();
  EXPECT_FALSE(component);
  EXPECT_EQ(pointer->references, 1u);
  pointer->Release();
}

}  // namespace
}  // namespace qmx::test
