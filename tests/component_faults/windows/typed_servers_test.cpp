// Components as typed languages make them: "ByRef iTableName As String" takes no reference to a VARIANT.
#include <gtest/gtest.h>

#include "tests/component_faults/windows/failing_dispatch.h"
#include "tests/component_faults/windows/over_com.h"
#include "tests/component_faults/wrong_answers.h"

namespace qmx::test {
namespace {

class ServersWithTypedParameters : public testing::Test {
 protected:
  ServersWithTypedParameters() {
    calls_.haveTypes = true;
    ReplaceObjectsOfCom(
        [this](ComPtr<IDispatch> created) { return FailingDispatch::Around(std::move(created), calls_); });
  }
  ~ServersWithTypedParameters() override { ReplaceObjectsOfCom({}); }

  void ExpectTheSame(const Found& found, const Found& expected) {
    EXPECT_EQ(found.left, expected.left);
    EXPECT_EQ(found.reported, expected.reported);
    EXPECT_EQ(found.calls, expected.calls);
  }

  FailingCalls calls_;
};

TEST_F(ServersWithTypedParameters, HearWhatOthersHearOfACopy) {
  for (const char* name : {"tsmdm030 in full", "tsmdm140 by change", "calendars in full"}) {
    SCOPED_TRACE(name);
    const CopySubject& subject = SubjectNamed(name);
    ExpectTheSame(WithoutFault(subject, Ways().back()), WithoutFault(subject, Ways().front()));
  }
}

TEST_F(ServersWithTypedParameters, HearWhatOthersHearOfAFailedCopy) {
  const CopySubject& subject = SubjectNamed("tsmdm030 in full");
  const CopyFault fault = {"manager.List", 1, &WrongAnswers().front()};
  const Found found = With(fault, subject, Ways().back());
  EXPECT_TRUE(found.hasStruck);
  ExpectTheSame(found, With(fault, subject, Ways().front()));
}

}  // namespace
}  // namespace qmx::test
