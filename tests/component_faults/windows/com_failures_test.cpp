// What the program leaves and reports when a component fails as only COM components do.
#include "tests/component_faults/windows/com_failures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "tests/component_faults/story.h"
#include "tests/component_faults/windows/over_com.h"
#include "tests/component_faults/wrong_answers.h"
#include "tests/support/golden.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;
using testing::Not;

const Way& Com() { return Ways().back(); }

Found WithFailure(const ComFailure& failure, const std::string& call, int number, const CopySubject& subject) {
  FailingCalls failing;
  ReplaceObjectsOfCom([&](ComPtr<IDispatch> created) { return FailingDispatch::Around(std::move(created), failing); });
  Found found;
  {
    ErpCopy copy(subject, Com());
    failing.failure = &failure;
    failing.calls.Strike(call, number);
    found = FoundAfter(copy);
  }
  ReplaceObjectsOfCom({});
  found.hasStruck = failing.calls.HasStruck();
  return found;
}

// The system's own texts are not the same on each system, and Wine has none for some results.
Found WithoutSystemTexts(Found found) {
  static const std::regex text("(0x[0-9A-F]{8})( \\([^)]*\\))?");
  for (std::string& chain : found.reported) chain = std::regex_replace(chain, text, "$1 (TEXT)");
  for (std::string& line : found.left) line = std::regex_replace(line, text, "$1 (TEXT)");
  return found;
}

TEST(AFailureOfCom, IsReportedAsTheGoldenFileShows) {
  const CopySubject& subject = SubjectNamed("tsmdm030 in full");
  Story story("Failures of COM, " + subject.name);
  for (const char* call : {"manager.List", "listed.getServiceTypeDescription"}) {
    for (const ComFailure& failure : ComFailures()) {
      const Found found = WithoutSystemTexts(WithFailure(failure, call, 1, subject));
      EXPECT_TRUE(found.hasStruck);
      story.Add(std::string(call) + ' ' + failure.name, found);
    }
  }
  ExpectGolden(GOLDEN_FOLDER "/failures_of_COM.txt", story.Text());
}

class FailuresOfCom : public testing::TestWithParam<CopySubject> {};

// Without the texts of the failures.
std::vector<std::string> LeftInTheDatabase(const Found& found) {
  std::vector<std::string> left = found.left;
  std::erase_if(left, [](const std::string& line) {
    return line.find(".log") != std::string::npos || line.find(".txt: ") != std::string::npos;
  });
  return left;
}

TEST_P(FailuresOfCom, LeaveWhatAnErrorOfTheComponentLeaves) {
  const CopySubject& subject = GetParam();
  std::size_t turn = 0;
  for (const CopyFault& fault : FaultsOf(subject)) {
    if (fault.answer != &WrongAnswers().front() || fault.number > 1) continue;
    const ComFailure& failure = ComFailures()[turn++ % kFailingResults];
    SCOPED_TRACE(fault.call + ' ' + failure.name);
    const Found raised = With(fault, subject, Com());
    const Found found = WithFailure(failure, fault.call, fault.number, subject);
    EXPECT_TRUE(found.hasStruck);
    EXPECT_EQ(found.reported.empty(), raised.reported.empty());
    EXPECT_EQ(LeftInTheDatabase(found), LeftInTheDatabase(raised));
  }
  EXPECT_GT(turn, 8u);
}

// The copies by change share their steps.
std::vector<CopySubject> Chosen() {
  std::vector<CopySubject> subjects = CopySubjects();
  std::erase_if(subjects, [](const CopySubject& subject) {
    return subject.name.ends_with("by change") && subject.name != "tsmdm140 by change" &&
           subject.name != "calendars by change";
  });
  return subjects;
}

INSTANTIATE_TEST_SUITE_P(OfATable, FailuresOfCom, testing::ValuesIn(Chosen()), NameOfSubject);

}  // namespace
}  // namespace qmx::test
