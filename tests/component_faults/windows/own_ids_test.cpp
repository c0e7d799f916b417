// Components as scripts make them: no type information, and other ids of the members for each object.
#include <gtest/gtest.h>

#include "tests/component_faults/windows/failing_dispatch.h"
#include "tests/component_faults/windows/over_com.h"
#include "tests/component_faults/wrong_answers.h"

namespace qmx::test {
namespace {

TEST(ComponentsWithIdsOfTheirOwn, LeaveWhatOthersLeave) {
  for (const char* name : {"tsmdm030 in full", "tsmdm140 by change", "tssoc200 in full", "calendars by change"}) {
    SCOPED_TRACE(name);
    const CopySubject& subject = SubjectNamed(name);
    FailingCalls calls;
    calls.haveOwnIds = true;
    ReplaceObjectsOfCom([&](ComPtr<IDispatch> created) { return FailingDispatch::Around(std::move(created), calls); });
    const Found found = WithoutFault(subject, Ways().back());
    ReplaceObjectsOfCom({});
    const Found expected = WithoutFault(subject, Ways().front());
    EXPECT_EQ(found.left, expected.left);
    EXPECT_EQ(found.reported, expected.reported);
    EXPECT_EQ(found.calls, expected.calls);
  }
}

}  // namespace
}  // namespace qmx::test
