#include "platform/com/com_type.h"

#include <gtest/gtest.h>

#include "platform/com/objects.h"
#include "platform/components.h"
#include "tests/platform/com/stub_component.h"

namespace qmx::test {
namespace {

// The GUID of every script object, whatever its members are.
constexpr GUID kOfScripts = {0xC59C6B12, 0xF6C1, 0x11CF, {0x88, 0x35, 0x00, 0xA0, 0xC9, 0x11, 0xE8, 0xB2}};

// A script object that answers with the place of the member, counted from 1.
ComPtr<StubComponent> Script(std::vector<std::wstring> members) {
  auto script = StubComponent::Make(
      [](const StubComponent::Call& call) {
        call.result->vt = VT_I4;
        call.result->lVal = call.id;
        return S_OK;
      },
      members);
  script->information = ComPtr<ITypeInfo>::Owning(new StubTypeInfo(kOfScripts, L"JScriptTypeInfo", std::move(members)));
  return script;
}

TEST(ScriptObjects, WithOtherMembersUnderTheSameIdsAreAskedForEach) {
  const auto one = Script({L"getCode", L"getText"});
  const auto other = Script({L"getText", L"getCode"});
  const Member code("getCode");
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(ObjectFrom(one.Get()).Call(code), Variant(1));
    EXPECT_EQ(ObjectFrom(other.Get()).Call(code), Variant(2));
  }
}

TEST(ScriptObjects, HaveTypesThatRememberNothing) {
  const auto script = Script({L"getCode"});
  const ComType::Found found = ComType::Of(*script).Find(*script, "getCode");
  EXPECT_EQ(found.result, S_OK);
  EXPECT_EQ(found.id, 1);
  EXPECT_FALSE(found.isRemembered);
}

TEST(OtherObjects, HaveTypesThatRememberTheirMembers) {
  constexpr GUID kRecord = {0x5A6B1C52, 0x2E0C, 0x4A55, {0x9D, 0x60, 0, 0, 0, 0, 0, 0x21}};
  const auto record = Script({L"getCode"});
  record->information = ComPtr<ITypeInfo>::Owning(new StubTypeInfo(kRecord, L"Record", {L"getCode"}));
  EXPECT_TRUE(ComType::Of(*record).Find(*record, "getCode").isRemembered);
  EXPECT_EQ(&ComType::Of(*record), &ComType::Of(*record));
}

}  // namespace
}  // namespace qmx::test
