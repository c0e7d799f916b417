// What the program leaves and reports when a call of a component fails or gives a value of a wrong type. Each way to
// reach components, on each system, leaves what the golden files show.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/component_faults/story.h"
#include "tests/component_faults/wrong_answers.h"
#include "tests/support/golden.h"

namespace qmx::test {
namespace {

class ComponentFaults : public testing::TestWithParam<std::tuple<Way, const char*>> {
 protected:
  const Way& way_ = std::get<0>(GetParam());
  const CopySubject& subject_ = SubjectNamed(std::get<1>(GetParam()));
};

std::string FileName(std::string name) {
  std::ranges::replace(name, ' ', '_');
  return name;
}

TEST_P(ComponentFaults, LeaveAndReportWhatTheGoldenFileShows) {
  Story story(subject_.name);
  story.Add("no fault", WithoutFault(subject_, way_));
  for (const CopyFault& fault : FaultsOf(subject_)) {
    const Found found = With(fault, subject_, way_);
    EXPECT_TRUE(found.hasStruck) << fault.Name();
    story.Add(fault.Name(), found);
  }
  ExpectGolden(GOLDEN_FOLDER + ("/" + FileName(subject_.name)) + ".txt", story.Text());
}

std::string NameOfInstance(const testing::TestParamInfo<ComponentFaults::ParamType>& instance) {
  std::string name = std::string(std::get<0>(instance.param).name) + "_" + std::get<1>(instance.param);
  std::ranges::replace(name, ' ', '_');
  return name;
}

// All tables share their steps. Windows compares its ways for every table.
INSTANTIATE_TEST_SUITE_P(InEachWay, ComponentFaults,
                         testing::Combine(testing::ValuesIn(Ways()),
                                          testing::Values("tsmdm030 in full", "tsmdm030 by change", "tsspc200 in full",
                                                          "calendars by code")),
                         NameOfInstance);

}  // namespace
}  // namespace qmx::test
