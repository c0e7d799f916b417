#include <gmock/gmock.h>

#include "platform/components/installed_components.h"
#include "tests/platform/components/server_folder.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;

class AConfiguredServer : public testing::Test {
 protected:
  std::string Add(const std::string& name, const std::string& library, const std::string& more) {
    const std::string path = folder / (name + ".component");
    WriteFile(path, "library = " + TestServer(library) + "\n" + more);
    return path;
  }
  Variant Given(const char* progId) { return components.CreateObject(progId).Call("given"); }
  const Manifest& OnlyManifest() { return components.Folders().at(0).manifests.at(0); }

  ServerFolder folder;
  FakeClock clock;
  InstalledComponents components{clock, {folder.Path()}};
};

TEST_F(AConfiguredServer, GetsTheSettingsOfItsManifestAndTheProgIdAsTheManifestSpellsIt) {
  const std::string path =
      Add("a", "configured", "progid = Test.Thing\nsetting place = here\nsetting place=there\nsetting class X = a.B\n");
  EXPECT_EQ(Given("test.THING"), Variant(path + "|Test.Thing|Test.Thing|place=here|place=there|class X=a.B"));
}

TEST_F(AConfiguredServer, GetsWhatAPatternStandsForAsTheProgramSpellsIt) {
  const std::string path = Add("a", "configured", "progid = Test.*\n");
  EXPECT_EQ(Given("test.THING"), Variant(path + "|Test.*|Test.THING"));
}

TEST_F(AConfiguredServer, ServesSeveralManifestsEachWithItsOwnSettings) {
  const std::string first = Add("a", "configured", "progid = Test.One\nsetting place = here\n");
  const std::string second = Add("b", "configured", "progid = Test.Two\nsetting place = there\n");
  EXPECT_EQ(Given("Test.One"), Variant(first + "|Test.One|Test.One|place=here"));
  EXPECT_EQ(Given("Test.Two"), Variant(second + "|Test.Two|Test.Two|place=there"));
}

TEST_F(AConfiguredServer, IsRefusedIfItsLibraryTakesNoSettings) {
  const std::string why =
      "it takes no settings, but its manifest has \"setting place\"; remove the setting, or install a version of the "
      "library that takes it";
  for (const char* const library : {"frozen", "probe"}) {
    Add("a", library, "progid = Test.Probe\nsetting place = here\n");
    InstalledComponents fresh{clock, {folder.Path()}};
    const Error error = Raised([&] { fresh.CreateObject("Test.Probe"); });
    EXPECT_EQ(error.Number(), 429);
    EXPECT_THAT(error.Description(), HasSubstr(why)) << library;
  }
}

TEST_F(AConfiguredServer, AddsDetailsToItsErrors) {
  Add("a", "configured", "progid = Test.Thing\n");
  const Object object = components.CreateObject("Test.Thing");
  const Error error = Raised([&] { object.Call("fail"); });
  EXPECT_EQ(error.Number(), 1017);
  EXPECT_EQ(error.Description(), "The ERP is closed.");
  EXPECT_EQ(error.Details().at(0), (Error::Detail{"details", "first line\n  second line"}));
}

TEST_F(AConfiguredServer, AddsDetailsWhenItDoesNotMakeAnObject) {
  const std::string path = Add("a", "configured", "progid = Test.Missing\n");
  const Error error = Raised([&] { components.CreateObject("Test.Missing"); });
  EXPECT_EQ(error.Number(), 429);
  EXPECT_THAT(error.Description(), HasSubstr("it refused with error 429, Configured: No Test.Missing is there."));
  EXPECT_EQ(error.Details(), (std::vector<Error::Detail>{{"progid", "Test.Missing"}, {"details", path}}));
}

TEST_F(AConfiguredServer, DescribesWhatServesAManifest) {
  Add("a", "configured", "progid = Test.Thing\nsetting place = here\n");
  const std::vector<ServerFact> facts = InstalledComponents::Load(OnlyManifest()).Describe(OnlyManifest());
  ASSERT_EQ(facts.size(), 2u);
  EXPECT_EQ(facts[0].name + "=" + facts[0].value, "version=1.5");
  EXPECT_EQ(facts[1].name + "=" + facts[1].value, "place=here");
}

TEST_F(AConfiguredServer, ThatCannotDescribeItselfSaysWhy) {
  Add("a", "configured", "progid = Test.Thing\n");
  const Error error = Raised([&] { InstalledComponents::Load(OnlyManifest()).Describe(OnlyManifest()); });
  EXPECT_EQ(error.Number(), 429);
  EXPECT_EQ(error.Description(), "it refused with error 1, Configured: No ERP is set.");
}

TEST_F(AConfiguredServer, ChecksProgIdsWithoutMakingThem) {
  Add("a", "configured", "progid = Test.Thing\nprogid = Test.Missing\n");
  const ServerLibrary& server = InstalledComponents::Load(OnlyManifest());
  server.Check(OnlyManifest(), "Test.Thing");
  const Error error = Raised([&] { server.Check(OnlyManifest(), "Test.Missing"); });
  EXPECT_EQ(error.Description(), "it refused with error 429, Configured: No Test.Missing is there.");
}

TEST_F(AConfiguredServer, ThatIsOlderThanItsHostDescribesAndChecksNothing) {
  Add("a", "frozen", "progid = Test.Missing\n");
  const ServerLibrary& server = InstalledComponents::Load(OnlyManifest());
  EXPECT_TRUE(server.Describe(OnlyManifest()).empty());
  server.Check(OnlyManifest(), "Test.Missing");
}

}  // namespace
}  // namespace qmx::test
