// Components in another process, which COM calls over its own proxies; here they are in another apartment.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/component_faults/windows/failing_dispatch.h"
#include "tests/component_faults/windows/over_com.h"
#include "tests/component_faults/wrong_answers.h"
#include "tests/platform/com/registered_class.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::Contains;
using testing::HasSubstr;

class OtherProcess : public testing::TestWithParam<const char*> {
 protected:
  OtherProcess() {
    ReplaceObjectsOfCom([this](ComPtr<IDispatch> created) {
      const ComPtr<IDispatch> failing = FailingDispatch::Around(std::move(created), failing_);
      servers_.push_back(std::make_unique<OtherApartment>(ComPtr<IUnknown>::Sharing(failing.Get())));
      return servers_.back()->Unmarshal();
    });
  }
  ~OtherProcess() override { ReplaceObjectsOfCom({}); }

  Found Copied() {
    ErpCopy copy(subject_, Ways().back());
    Found found = FoundAfter(copy);
    servers_.clear();
    return found;
  }

  const CopySubject& subject_ = SubjectNamed(GetParam());
  FailingCalls failing_;
  std::vector<std::unique_ptr<OtherApartment>> servers_;
};

TEST_P(OtherProcess, LeavesWhatComponentsInTheSameProcessLeave) {
  const Found found = Copied();
  const Found expected = WithoutFault(subject_, Ways().front());
  EXPECT_EQ(found.left, expected.left);
  EXPECT_EQ(found.reported, expected.reported);
  EXPECT_EQ(found.calls, expected.calls);
}

TEST_P(OtherProcess, ThatEndsFailsTheCopyAtItsNextCall) {
  const ComFailure ends = {"ends", [this](DISPPARAMS&, VARIANT&, EXCEPINFO&, UINT&) {
                             failing_.DisconnectAll();
                             return S_OK;
                           }};
  failing_.failure = &ends;
  failing_.calls.Strike("manager.initialize", 1);
  const Found found = Copied();
  EXPECT_TRUE(failing_.calls.HasStruck());
  ASSERT_FALSE(found.reported.empty());
  // Windows says that the object is disconnected, Wine that it no longer has the interface.
  EXPECT_THAT(found.reported.front(), AnyOf(HasSubstr("hresult: 0x80010108"), HasSubstr("hresult: 0x800706B5")));
  EXPECT_THAT(found.left, Contains(HasSubstr("in use 0, last update time 2026-11-19")));
}

INSTANTIATE_TEST_SUITE_P(OfATable, OtherProcess,
                         testing::Values("tsmdm030 in full", "tsmdm030 by change", "tssoc200 in full",
                                         "calendars in full"),
                         [](const auto& instance) {
                           std::string name = instance.param;
                           std::ranges::replace(name, ' ', '_');
                           return name;
                         });

}  // namespace
}  // namespace qmx::test
