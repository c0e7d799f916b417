#include "platform/components/installed_components.h"

#include <dlfcn.h>
#include <gmock/gmock.h>

#include "tests/platform/components/server_folder.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class InstalledServers : public testing::Test {
 protected:
  // What a user reads when the creation fails.
  std::string Refusal(const std::string& progId) {
    const Error error = Raised([&] { components.CreateObject(progId); });
    EXPECT_EQ(error.Number(), 429);
    EXPECT_EQ(error.Source(), "Components");
    EXPECT_EQ(error.Details(), (std::vector<Error::Detail>{{"progid", progId}}));
    return error.Description();
  }

  static bool IsLoaded(const std::string& library) {
    void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle) dlclose(handle);
    return handle != nullptr;
  }

  ServerFolder folder;
  FakeClock clock;
  InstalledComponents components{clock, {folder.Path()}};
};

TEST_F(InstalledServers, ServeTheProgIdsOfTheirManifestsInAnyCase) {
  folder.Add("probe", TestServer("probe"), {"test.PROBE", "Test.Probe"});
  EXPECT_EQ(components.CreateObject("Test.Probe").Call("count"), Variant(0));
}

TEST_F(InstalledServers, AreLoadedOnlyWhenTheyAreAskedFor) {
  // Copies, which no other test has loaded.
  for (const char* name : {"first.so", "asked.so", "last.so"}) {
    std::filesystem::copy_file(TestServer("probe"), folder / name);
  }
  folder.Add("a", "first.so", {"Other.Thing"});
  folder.Add("b", "asked.so", {"Test.Probe"});
  folder.Add("c", "last.so", {"Test.Probe"});
  EXPECT_FALSE(IsLoaded(folder / "asked.so"));
  EXPECT_TRUE(components.CreateObject("Test.Probe"));
  EXPECT_FALSE(IsLoaded(folder / "first.so"));
  EXPECT_TRUE(IsLoaded(folder / "asked.so"));
  EXPECT_FALSE(IsLoaded(folder / "last.so"));
}

TEST_F(InstalledServers, AreListedWithTheirManifests) {
  const std::string path = folder.Add("probe", "probe.so", {"Test.Probe", "Test.Other"});
  ASSERT_EQ(components.Folders().size(), 1u);
  ASSERT_EQ(components.Folders()[0].manifests.size(), 1u);
  const Manifest& manifest = components.Folders()[0].manifests[0];
  EXPECT_EQ(manifest.path, path);
  EXPECT_EQ(manifest.library, folder / "probe.so");
  EXPECT_EQ(manifest.progIds.size(), 2u);
}

TEST_F(InstalledServers, ThatNobodyClaimsAreReportedWithEveryFolder) {
  folder.Add("probe", TestServer("probe"), {"Test.Probe"});
  EXPECT_EQ(Refusal("ServiceTypes.ServiceTypesManager"),
            "Cannot create an object of \"ServiceTypes.ServiceTypesManager\"; " + folder.Path().string() +
                ": no manifest names it. The folders of QMX_COMPONENTS are searched for component manifests.");
}

TEST_F(InstalledServers, InAMissingFolderAreReported) {
  InstalledComponents two{clock, {folder.Path(), folder / "none"}};
  const Error error = Raised([&] { two.CreateObject("Test.Probe"); });
  EXPECT_THAT(error.Description(), AllOf(HasSubstr(folder.Path().string() + ": no manifest names it"),
                                         HasSubstr((folder / "none") + ": No such file or directory")));
}

TEST_F(InstalledServers, WithABrokenManifestAreReported) {
  WriteFile(folder / "broken.component", "library = a.so\nprogid Test.Probe\n");
  EXPECT_THAT(Refusal("Test.Probe"), HasSubstr((folder / "broken.component") + ", line 2: "));
}

TEST_F(InstalledServers, WithAMissingLibraryAreReported) {
  const std::string manifest = folder.Add("a", "missing.so", {"Test.Probe"});
  EXPECT_THAT(Refusal("Test.Probe"), AllOf(HasSubstr(manifest + ", library " + (folder / "missing.so") + ": "),
                                           HasSubstr("cannot open shared object file")));
}

TEST_F(InstalledServers, ThatAreNoLibraryAreReported) {
  WriteFile(folder / "text.so", "no library");
  folder.Add("a", "text.so", {"Test.Probe"});
  EXPECT_THAT(Refusal("Test.Probe"), HasSubstr("file too short"));
}

TEST_F(InstalledServers, WithoutAnEntryAreReported) {
  folder.Add("a", TestServer("without_entry"), {"Test.Probe"});
  EXPECT_THAT(Refusal("Test.Probe"), HasSubstr("it has no entry function qmx_component_server_entry"));
}

TEST_F(InstalledServers, WhoseEntryFailsAreReportedAndNotEnteredAgain) {
  folder.Add("a", TestServer("failing_entry"), {"Test.Probe"});
  const std::string reason =
      "its entry function failed with error 51, Failing server: The ERP client is not installed.";
  EXPECT_THAT(Refusal("Test.Probe"), HasSubstr(reason));
  EXPECT_THAT(Refusal("Test.Probe"), HasSubstr(reason));
}

TEST_F(InstalledServers, OfAnotherVersionAreReported) {
  folder.Add("a", TestServer("other_version"), {"Test.Probe"});
  EXPECT_THAT(Refusal("Test.Probe"),
              HasSubstr("it speaks version 7 of the component interface, this program version 1"));
}

TEST_F(InstalledServers, WhoseEntryThrowsAnExceptionAreReported) {
  folder.Add("a", TestServer("throwing_entry"), {"Test.Probe"});
  EXPECT_THAT(Refusal("Test.Probe"), HasSubstr("its entry function threw an exception: there is no licence"));
}

TEST_F(InstalledServers, ThatAreTooShortAreReported) {
  folder.Add("a", TestServer("too_short"), {"Test.Probe"});
  EXPECT_THAT(Refusal("Test.Probe"), HasSubstr("its server description is too short to create objects"));
}

TEST_F(InstalledServers, ThatRefuseToCreateAreReportedWithTheirReason) {
  folder.Add("a", TestServer("probe"), {"Test.Expired", "Test.OddStatus", "Test.NoObject", "Test.LetsAnExceptionOut"});
  EXPECT_THAT(Refusal("Test.Expired"), HasSubstr("it refused with error 429, Probe: The licence has run out. "));
  EXPECT_THAT(Refusal("Test.OddStatus"), HasSubstr("it returned status 7"));
  EXPECT_THAT(Refusal("Test.NoObject"), HasSubstr("it succeeded without giving an object"));
  EXPECT_THAT(Refusal("Test.LetsAnExceptionOut"), HasSubstr("it threw an exception: out of create"));
}

TEST_F(InstalledServers, ThatClaimFirstServeFirst) {
  folder.Add("a", TestServer("frozen"), {"Test.Probe"});
  folder.Add("b", TestServer("probe"), {"Test.Probe"});
  EXPECT_EQ(components.CreateObject("Test.Probe").Call("getAnswer"), Variant(1));
}

TEST_F(InstalledServers, ThatCannotServeLeaveItToTheNext) {
  folder.Add("a", "missing.so", {"Test.Probe"});
  folder.Add("b", TestServer("probe"), {"Test.Probe"});
  EXPECT_TRUE(components.CreateObject("Test.Probe"));
}

TEST_F(InstalledServers, ThatAllFailAreAllReported) {
  const std::string first = folder.Add("a", "missing.so", {"Test.Probe"});
  const std::string second = folder.Add("b", TestServer("without_entry"), {"Test.Probe"});
  EXPECT_THAT(Refusal("Test.Probe"), AllOf(HasSubstr(first), HasSubstr(second)));
}

TEST_F(InstalledServers, MayTakeThePlaceOfTheBuiltInDate) {
  folder.Add("a", TestServer("frozen"), {"java:java.util.Date"});
  EXPECT_EQ(components.CreateObject("java:java.util.Date").Call("getAnswer"), Variant(1));
}

TEST_F(InstalledServers, ThatClaimTheDateAndFailAreReported) {
  folder.Add("a", "missing.so", {"java:java.util.Date"});
  EXPECT_THAT(Refusal("java:java.util.Date"), HasSubstr("missing.so"));
}

TEST_F(InstalledServers, AreSharedByTheirPathsInTheFileSystem) {
  std::filesystem::create_symlink(TestServer("probe"), folder.Path() / "link.so");
  folder.Add("a", "link.so", {"Test.Probe"});
  ServerFolder other;
  other.Add("a", TestServer("probe"), {"Test.Probe"});
  const Object first = components.CreateObject("Test.Probe");
  InstalledComponents more{clock, {other.Path()}};
  const Object second = more.CreateObject("Test.Probe");
  EXPECT_EQ(first.Call("living"), Variant(2));
}

TEST_F(InstalledServers, AreEnteredOnceUnderAllTheirPaths) {
  std::filesystem::create_symlink(TestServer("failing_entry"), folder.Path() / "link.so");
  folder.Add("a", "link.so", {"Test.Probe"});
  folder.Add("b", TestServer("failing_entry"), {"Test.Probe"});
  EXPECT_THAT(Refusal("Test.Probe"), testing::Not(HasSubstr("Entered twice.")));
}

// A place besides the manifests, whose answer a test decides.
class FurtherPlace final : public FurtherComponents {
 public:
  struct Registered {
    Answer answer;
    std::vector<std::string> asked;
    std::string progId;
  };

  explicit FurtherPlace(std::shared_ptr<Registered> registered) : registered_(std::move(registered)) {}
  std::string Name() const override { return "COM"; }
  Registration Find(std::string_view progId) override { return {progId == registered_->progId, {}}; }
  Answer Create(std::string_view progId) override {
    registered_->asked.emplace_back(progId);
    return registered_->answer;
  }

 private:
  std::shared_ptr<Registered> registered_;
};

class InstalledServersBesideAFurtherPlace : public InstalledServers {
 protected:
  std::string RefusalOfAll(const std::string& progId) {
    const Error error = Raised([&] { all.CreateObject(progId); });
    EXPECT_EQ(error.Number(), 429);
    return error.Description();
  }
  std::string NoManifest() const { return folder.Path().string() + ": no manifest names it"; }

  std::shared_ptr<FurtherPlace::Registered> further = std::make_shared<FurtherPlace::Registered>();
  InstalledComponents all{clock, {folder.Path()}, std::make_unique<FurtherPlace>(further)};
};

TEST_F(InstalledServersBesideAFurtherPlace, ServeFirst) {
  folder.Add("probe", TestServer("probe"), {"Test.Probe"});
  EXPECT_TRUE(all.CreateObject("Test.Probe"));
  EXPECT_THAT(further->asked, testing::IsEmpty());
}

TEST_F(InstalledServersBesideAFurtherPlace, LeaveToItWhatTheyDoNotClaim) {
  further->answer = {components.CreateObject("java:java.util.Date"), true, ""};
  EXPECT_EQ(all.CreateObject("Other.Thing"), further->answer.object);
  EXPECT_THAT(further->asked, testing::ElementsAre("Other.Thing"));
}

TEST_F(InstalledServersBesideAFurtherPlace, LeaveToItWhatTheyCannotServe) {
  folder.Add("a", "missing.so", {"Test.Probe"});
  further->answer = {components.CreateObject("java:java.util.Date"), true, ""};
  EXPECT_EQ(all.CreateObject("Test.Probe"), further->answer.object);
}

TEST_F(InstalledServersBesideAFurtherPlace, AreRegisteredWhereOneOfThemHasTheProgId) {
  folder.Add("probe", TestServer("probe"), {"Test.Probe"});
  further->progId = "Other.Thing";
  for (const char* progId : {"test.PROBE", "Other.Thing", "java:java.util.Date"})
    EXPECT_TRUE(all.IsRegistered(progId)) << progId;
  EXPECT_FALSE(all.IsRegistered("No.Thing"));
  EXPECT_FALSE(components.IsRegistered("Other.Thing"));
  EXPECT_THAT(further->asked, testing::IsEmpty());  // nothing is created
  EXPECT_EQ(all.Further()->Name(), "COM");
  EXPECT_EQ(components.Further(), nullptr);
}

TEST_F(InstalledServersBesideAFurtherPlace, AreReportedWithItAndTheBuiltInDate) {
  further->answer = {{}, false, "COM: nothing is registered under this name"};
  EXPECT_EQ(RefusalOfAll("Test.Probe"),
            "Cannot create an object of \"Test.Probe\"; " + NoManifest() +
                "; COM: nothing is registered under this name; built-in: only the date. The folders of QMX_COMPONENTS "
                "are searched for component manifests.");
}

TEST_F(InstalledServersBesideAFurtherPlace, LeaveTheDateToItBeforeTheBuiltInOne) {
  folder.Add("probe", TestServer("probe"), {"Test.Probe"});
  further->answer = {components.CreateObject("Test.Probe"), true, ""};
  EXPECT_EQ(all.CreateObject("java:java.util.Date"), further->answer.object);
}

TEST_F(InstalledServersBesideAFurtherPlace, LeaveTheDateToTheBuiltInOneIfNothingIsRegistered) {
  further->answer = {{}, false, "COM: nothing is registered under this name"};
  EXPECT_TRUE(all.CreateObject("java:java.util.Date"));
}

TEST_F(InstalledServersBesideAFurtherPlace, ReportADateThatIsRegisteredAndCannotBeCreated) {
  further->answer = {{}, true, "COM: the creation failed with 0x80070005"};
  EXPECT_EQ(RefusalOfAll("java:java.util.Date"),
            "Cannot create an object of \"java:java.util.Date\"; " + NoManifest() +
                "; COM: the creation failed with 0x80070005; built-in: not used, because the date is registered. The "
                "folders of QMX_COMPONENTS are searched for component manifests.");
}

}  // namespace
}  // namespace qmx::test
