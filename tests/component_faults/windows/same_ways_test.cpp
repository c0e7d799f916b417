// COM leaves, reports and calls what the C interface does, for every table, whatever goes wrong. Each member fails
// once, and in full copies it gives another wrong answer than the member before. With QMX_TEST_EVERY_FAULT=1 each gives
// all.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/component_faults/wrong_answers.h"

namespace qmx::test {
namespace {

std::vector<CopyFault> Chosen(const CopySubject& subject) {
  std::vector<CopyFault> faults = FaultsOf(subject);
  if (std::getenv("QMX_TEST_EVERY_FAULT")) return faults;
  const std::vector<WrongAnswer>& answers = WrongAnswers();
  const bool isByChange = subject.name.ends_with("by change");
  std::size_t turn = 0;
  std::erase_if(faults, [&](const CopyFault& fault) {
    const bool raises = fault.answer == &answers.front();
    if (raises) turn = turn % (answers.size() - 1) + 1;
    return fault.number > 1 || (!raises && (isByChange || fault.answer != &answers[turn]));
  });
  return faults;
}

class ThroughCom : public testing::TestWithParam<CopySubject> {
 protected:
  const CopySubject& subject_ = GetParam();

  void ExpectTheSame(const Found& overC, const Found& overCom) {
    EXPECT_EQ(overCom.left, overC.left);
    EXPECT_EQ(overCom.reported, overC.reported);
    EXPECT_EQ(overCom.calls, overC.calls);
    EXPECT_EQ(overCom.hasStruck, overC.hasStruck);
  }
};

TEST_P(ThroughCom, ACopyLeavesWhatItLeavesOverTheCInterfaceAfterEachWrongAnswer) {
  ExpectTheSame(WithoutFault(subject_, Ways()[0]), WithoutFault(subject_, Ways()[1]));
  const std::vector<CopyFault> faults = Chosen(subject_);
  EXPECT_GE(faults.size(), 18u);
  for (const CopyFault& fault : faults) {
    SCOPED_TRACE(fault.Name());
    ExpectTheSame(With(fault, subject_, Ways()[0]), With(fault, subject_, Ways()[1]));
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(OfEveryTable, ThroughCom, testing::ValuesIn(CopySubjects()), NameOfSubject);

}  // namespace
}  // namespace qmx::test
