#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const std::string kDate = "built in\n  java:java.util.Date\n";

class QmxAdminComponents : public testing::Test {
 protected:
  Process Components(const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = {"components"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    // No command but this one takes no CONNECTION: one that is set does no harm.
    return test::Run(QMX_ADMIN, arguments, {{"QMX_COMPONENTS", folders_}, {"QMX_CONNECTION", "DSN=local"}});
  }

  std::string Add(const std::string& name, const std::string& library, const std::string& progId) {
    WriteFile(folder_ / name, "library = " + library + "\nprogid = " + progId + "\n");
    return folder_ / name;
  }

  const std::string sandbox_ = SANDBOX_COMPONENTS;
  TempFolder folder_;
  std::string folders_ = folder_.Path();
};

TEST_F(QmxAdminComponents, ShowsEachManifestWithItsLibraryAndProgIds) {
  folders_ = sandbox_;
  const Process run = Components();
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_THAT(run.out, StartsWith(sandbox_ + "/orvan_sandbox.component\n  library " + sandbox_ +
                                  "/orvan_sandbox.so: loads\n  ServiceTypes.ServiceTypesManager\n"));
  EXPECT_THAT(run.out, EndsWith(sandbox_ + "/qmx_sandbox_server.component\n  library " + sandbox_ +
                                "/qmx_sandbox_server.so: loads\n  QMXServer20.clsMessHandler\n"
                                "  QMXServer20.ClientRequests\n" +
                                kDate));
  EXPECT_THAT(run.err, IsEmpty());
}

TEST_F(QmxAdminComponents, ShowsWhyALibraryDoesNotLoad) {
  const std::string missing = Add("missing.component", "missing.so", "Skills.SkillsManager");
  WriteFile(folder_ / "text.so", "no library");
  Add("text.component", "text.so", "Skills.Skills");
  const Process run = Components();
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, StartsWith(missing + "\n  library " + (folder_ / "missing.so") + ": does not load: "));
  EXPECT_THAT(run.out, AllOf(HasSubstr("No such file or directory\n  Skills.SkillsManager\n"),
                             HasSubstr("file too short"), EndsWith(kDate)));
}

TEST_F(QmxAdminComponents, ShowsWhichServerCreatesAProgIdThatTwoClaim) {
  const std::string first = Add("a.component", sandbox_ + "/orvan_sandbox.so", "skills.skills");
  const std::string second = Add("b.component", sandbox_ + "/orvan_sandbox.so", "Skills.Skills");
  EXPECT_THAT(Components().out,
              AllOf(HasSubstr("\n  skills.skills\n"), HasSubstr("\n  Skills.Skills  (served by " + first + ")\n")));
  // One that does not load is passed over.
  Add("a.component", "missing.so", "Skills.Skills");
  EXPECT_THAT(Components().out, Not(HasSubstr("served by")));
}

TEST_F(QmxAdminComponents, ShowsWhatIsWrongWithFoldersAndManifests) {
  WriteFile(folder_ / "broken.component", "library = a.so\nprogid Test.Probe\n");
  folders_ += ":" + folder_ / "none";
  const Process run = Components();
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, kDate + (folder_ / "broken.component") +
                         ", line 2: \"library = FILE\" or \"progid = NAME\" expected.\n" + (folder_ / "none") +
                         ": No such file or directory.\n");
}

TEST_F(QmxAdminComponents, ShowsTheDateObjectOfAServerInPlaceOfTheBuiltInOne) {
  Add("dates.component", sandbox_ + "/orvan_sandbox.so", "Java:java.util.Date");
  EXPECT_THAT(Components().out, Not(HasSubstr("built in")));
}

TEST_F(QmxAdminComponents, ShowsWhatALibrarySaysAboutItselfAndItsProgIds) {
  const std::string path = folder_ / "a.component";
  const std::string library = CONFIGURED_SERVER;
  WriteFile(path, "library = " + library +
                      "\nsetting place = here\nprogid = Test.Thing\nprogid = Test.Missing\nprogid = Missing.*\n");
  Process run = Components();
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, path + "\n  library " + library +
                         ": loads\n  version: 1.5\n  place: here\n  Test.Thing\n"
                         "  Test.Missing: it refused with error 429, Configured: No Test.Missing is there.\n"
                         "  Missing.*\n" +
                         kDate);
  const auto rows = nlohmann::json::parse(Components({"--json"}).out);
  EXPECT_EQ(rows[0]["server"], "version: 1.5; place: here");
  EXPECT_EQ(rows[0]["serves"], true);
  EXPECT_EQ(rows[1]["serves"], false);
  EXPECT_EQ(rows[1]["problem"], "it refused with error 429, Configured: No Test.Missing is there.");

  WriteFile(path, "library = " + library + "\nsetting place = here\nprogid = Test.Thing\n");
  EXPECT_EQ(Components().status, 0);
  WriteFile(path, "library = " + library + "\nprogid = Test.Thing\n");
  run = Components();
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr(": does not load: it refused with error 1, Configured: No ERP is set.\n"));
}

TEST_F(QmxAdminComponents, ShowsWhoseProgIdsAPatternOfAnotherTakes) {
  const std::string first = Add("a.component", sandbox_ + "/orvan_sandbox.so", "Skills.*");
  Add("b.component", sandbox_ + "/orvan_sandbox.so", "Skills.Skills");
  EXPECT_THAT(Components().out,
              AllOf(HasSubstr("\n  Skills.*\n"), HasSubstr("\n  Skills.Skills  (served by " + first + ")\n")));
  Add("a.component", sandbox_ + "/orvan_sandbox.so", "java:*");
  EXPECT_THAT(Components().out, Not(HasSubstr("built in")));
}

TEST_F(QmxAdminComponents, PrintsAllOfItAsJson) {
  const std::string first = Add("a.component", sandbox_ + "/orvan_sandbox.so", "Skills.Skills");
  const std::string second = Add("b.component", "missing.so", "Skills.Skills");
  WriteFile(folder_ / "c.component", "");
  const Process run = Components({"--json"});
  EXPECT_EQ(run.status, 1);
  const auto rows = nlohmann::json::parse(run.out);
  ASSERT_EQ(rows.size(), 4U);
  EXPECT_EQ(rows[0], nlohmann::json({{"progid", "Skills.Skills"},
                                     {"manifest", first},
                                     {"library", sandbox_ + "/orvan_sandbox.so"},
                                     {"loads", true},
                                     {"serves", true},
                                     {"server", nullptr},
                                     {"problem", nullptr}}));
  EXPECT_EQ(rows[1]["manifest"], second);
  EXPECT_EQ(rows[1]["loads"], false);
  EXPECT_EQ(rows[1]["serves"], false);
  EXPECT_THAT(rows[1]["problem"].get<std::string>(), HasSubstr("cannot open shared object file"));
  EXPECT_EQ(rows[2]["progid"], "java:java.util.Date");
  EXPECT_EQ(rows[2]["manifest"], nullptr);
  EXPECT_EQ(rows[2]["serves"], true);
  EXPECT_EQ(rows[3]["progid"], nullptr);
  EXPECT_THAT(rows[3]["problem"].get<std::string>(), HasSubstr("no line \"library = FILE\""));
}

}  // namespace
}  // namespace qmx::test
