// Components may unmask the exceptions of the floating-point unit, which then end the program at its next division by
// zero.
#include "platform/com/floating_point.h"

#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <cmath>

#include "platform/com/com_components.h"
#include "platform/com/objects.h"
#include "platform/components.h"
#include "tests/platform/com/registered_class.h"
#include "tests/platform/com/stub_component.h"

namespace qmx::test {
namespace {

constexpr unsigned kSettings = 0xFFC0;  // of MXCSR; its other bits tell what happened

std::uint16_t ControlWord() {
  std::uint16_t word = 0;
  asm volatile("fnstcw %0" : "=m"(word));
  return word;
}

// As a library of Delphi does when it is loaded.
void Unmask() {
  _mm_setcsr(_mm_getcsr() & ~0x1F80U);
  const std::uint16_t word = ControlWord() & 0xFFC0U;
  asm volatile("fldcw %0" : : "m"(word));
}

class FloatingPoint : public testing::Test {
 protected:
  ~FloatingPoint() override { RestoreSettings(); }

  void ExpectUnchanged() {
    EXPECT_EQ(_mm_getcsr() & kSettings, vectors_ & kSettings);
    EXPECT_EQ(ControlWord(), word_);
    volatile double zero = 0;
    EXPECT_TRUE(std::isinf(1 / zero));
  }

  void RestoreSettings() {
    _mm_setcsr(vectors_);
    asm volatile("fldcw %0" : : "m"(word_));
  }

  const unsigned vectors_ = _mm_getcsr();
  const std::uint16_t word_ = ControlWord();
};

ComPtr<IUnknown> Made() { return ComPtr<IUnknown>::Owning(StubComponent::Make({}).Detach()); }

TEST_F(FloatingPoint, KeepsItsSettingsWhenAComponentIsCreated) {
  const std::shared_ptr<ComApartment> apartment = ComApartment::Enter();
  const RegisteredClass served("QmxTest.Unmasking", [] {
    Unmask();
    return Made();
  });
  ComComponents components;
  const bool isCreated = static_cast<bool>(components.Create("QmxTest.Unmasking").object);
  ExpectUnchanged();
  EXPECT_TRUE(isCreated);
}

TEST_F(FloatingPoint, KeepsItsSettingsWhenAMonikerGivesAnObject) {
  const std::shared_ptr<ComApartment> apartment = ComApartment::Enter();
  const RegisteredPrefix prefix("qmxunmasking", [](const std::string&) {
    Unmask();
    return Made();
  });
  ComComponents components;
  const bool isCreated = static_cast<bool>(components.Create("qmxunmasking:java.util.Date").object);
  ExpectUnchanged();
  EXPECT_TRUE(isCreated);
}

TEST_F(FloatingPoint, KeepsItsSettingsInACall) {
  const auto component = StubComponent::Make([](const StubComponent::Call&) {
    Unmask();
    return S_OK;
  });
  component->information = ComPtr<ITypeInfo>::Owning(
      new StubTypeInfo({0x5A6B1C52, 0x2E0C, 0x4A55, {0x9D, 0x60, 0, 0, 0, 0, 0, 0x22}}, L"Record", {L"ask"}));
  const Object object = ObjectFrom(component.Get());
  const Member ask("ask");
  for (int time = 0; time < 2; ++time) {
    object.Call(ask);
    ExpectUnchanged();
  }
  object.Call(ask, 1);
  ExpectUnchanged();
}

TEST_F(FloatingPoint, KeepsItsSettingsWhenACallFails) {
  const auto component = StubComponent::Make([](const StubComponent::Call&) {
    Unmask();
    return E_FAIL;
  });
  EXPECT_ANY_THROW(ObjectFrom(component.Get()).Call("ask"));
  ExpectUnchanged();
}

}  // namespace
}  // namespace qmx::test
