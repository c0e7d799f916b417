#include "platform/components/manifest.h"

#include <gmock/gmock.h>

#include "tests/support/environment.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;

class Manifests : public testing::Test {
 protected:
  Manifest Read(const std::string& text) {
    WriteFile(path, text);
    return ReadManifest(path);
  }
  std::string Complaint(const std::string& text) {
    const Error error = Raised([&] { Read(text); });
    EXPECT_EQ(error.Number(), 5);
    return error.Description();
  }
  TempFolder folder;
  std::string path = folder / "orvan.component";
};

TEST_F(Manifests, NameALibraryBesideThemAndItsProgIds) {
  const Manifest manifest = Read("library = orvan.so\nprogid = Skills.SkillsManager\nprogid = Skills.Skills\n");
  EXPECT_EQ(manifest.path, path);
  EXPECT_EQ(manifest.library, folder / "orvan.so");
  EXPECT_THAT(manifest.progIds, ElementsAre("Skills.SkillsManager", "Skills.Skills"));
}

TEST_F(Manifests, MayNameAnAbsoluteLibrary) {
  EXPECT_EQ(Read("library=/opt/orvan/bridge.so\nprogid=a").library, "/opt/orvan/bridge.so");
}

TEST_F(Manifests, SkipCommentsEmptyLinesBlanksAndLineEnds) {
  const Manifest manifest =
      Read("# bridge\r\n\r\n \t Library\t=  a library.so \r\n  # more\nPROGID = java:java.util.Date\n");
  EXPECT_EQ(manifest.library, folder / "a library.so");
  EXPECT_THAT(manifest.progIds, ElementsAre("java:java.util.Date"));
}

TEST_F(Manifests, MayBeginWithAByteOrderMark) {
  const Manifest manifest = Read("\xEF\xBB\xBFlibrary = a.so\nprogid = A\n");
  EXPECT_EQ(manifest.library, folder / "a.so");
  EXPECT_THAT(manifest.progIds, ElementsAre("A"));
  EXPECT_EQ(
      Complaint("library = a.so\n\xEF\xBB\xBFprogid = A\n"),
      path + ", line 2: unknown word \"\xEF\xBB\xBFprogid\"; \"library\", \"progid\" and \"setting NAME\" are known");
}

TEST_F(Manifests, InUtf16AreRefused) {
  EXPECT_EQ(Complaint(std::string("\xFF\xFEl\0=\0\n\0", 8)), path + ", line 1: the text is UTF-16. Save it as UTF-8");
}

TEST_F(Manifests, ClaimProgIdsWithoutRegardToCase) {
  const Manifest manifest = Read("library = a.so\nprogid = Skills.SkillsManager\n");
  EXPECT_TRUE(manifest.Claims("SKILLS.skillsmanager"));
  EXPECT_FALSE(manifest.Claims("Skills.SkillsManage"));
  EXPECT_FALSE(manifest.Claims("Skills.SkillsManagers"));
}

TEST_F(Manifests, ClaimWhatBeginsAsTheirPatternsDo) {
  const Manifest manifest = Read("library = a.so\nprogid = Skills.*\nprogid = Addresses.Addresses\n");
  EXPECT_TRUE(manifest.Claims("Skills.SkillsManager"));
  EXPECT_TRUE(manifest.Claims("skills.s"));
  EXPECT_TRUE(manifest.Claims("Skills."));
  EXPECT_TRUE(manifest.Claims("Skills.*"));
  EXPECT_FALSE(manifest.Claims("Skills"));
  EXPECT_FALSE(manifest.Claims("SkillsByEmployee.SkillsByEmployee"));
  EXPECT_FALSE(manifest.Claims("Addresses.AddressesManager"));
  EXPECT_TRUE(Read("library = a.so\nprogid = *\n").Claims("anything"));
}

TEST_F(Manifests, PreferTheLineOfAProgIdToAPattern) {
  const Manifest manifest = Read("library = a.so\nprogid = Skills.*\nprogid = Skills.SKILLS\n");
  EXPECT_EQ(*manifest.Claim("Skills.Skills"), "Skills.SKILLS");
  EXPECT_EQ(*manifest.Claim("Skills.SkillsManager"), "Skills.*");
  EXPECT_EQ(manifest.Claim("Addresses.Addresses"), nullptr);
}

TEST_F(Manifests, KeepTheSettingsOfTheirLibraryInOrder) {
  const Manifest manifest = Read(
      "library = a.so\nprogid = A\nsetting classpath = lib/*:classes\nSetting\toption=-Dname=a b\n"
      "setting option = -Xmx64m\nsetting class A = com.acme.A\n");
  EXPECT_THAT(manifest.settings,
              ElementsAre(Manifest::Setting{"classpath", "lib/*:classes"}, Manifest::Setting{"option", "-Dname=a b"},
                          Manifest::Setting{"option", "-Xmx64m"}, Manifest::Setting{"class A", "com.acme.A"}));
  EXPECT_THAT(Read("library = a.so\nprogid = A\n").settings, testing::IsEmpty());
}

TEST_F(Manifests, AreRefusedWithFileAndLine) {
  EXPECT_EQ(Complaint("library = a.so\n# fine\nSkills.Skills\n"),
            path + ", line 3: \"library = FILE\" or \"progid = NAME\" expected");
  EXPECT_EQ(Complaint("lib = a.so\n"),
            path + ", line 1: unknown word \"lib\"; \"library\", \"progid\" and \"setting NAME\" are known");
  EXPECT_EQ(Complaint("library = a.so\nprogid =  \n"), path + ", line 2: the value after \"=\" is missing");
  EXPECT_EQ(Complaint("setting = a\n"), path + ", line 1: a setting has no name; \"setting NAME = VALUE\" expected");
  EXPECT_EQ(Complaint("setting a =\n"), path + ", line 1: the value after \"=\" is missing");
  EXPECT_EQ(Complaint("settings a = b\n"),
            path + ", line 1: unknown word \"settings a\"; \"library\", \"progid\" and \"setting NAME\" are known");
  EXPECT_EQ(Complaint("library = a.so\nlibrary = b.so\n"), path + ", line 2: a second library; a manifest names one");
  EXPECT_EQ(Complaint("library = a.so\nprogid = A, B\n"),
            path + ", line 2: \"A, B\" is no single identifier; write a line \"progid = NAME\" for each");
  EXPECT_EQ(Complaint("library = a.so\nprogid = A B\n"),
            path + ", line 2: \"A B\" is no single identifier; write a line \"progid = NAME\" for each");
  EXPECT_EQ(Complaint("progid = a\n"), path + ": no line \"library = FILE\"");
  EXPECT_EQ(Complaint("library = a.so\n"), path + ": no line \"progid = NAME\"");
  EXPECT_EQ(Complaint(""), path + ": no line \"library = FILE\"");
}

TEST_F(Manifests, ThatCannotBeReadSaySo) {
  std::filesystem::create_directory(path);
  const Error error = Raised([&] { ReadManifest(path); });
  EXPECT_EQ(error.Number(), 53);
  EXPECT_EQ(error.Description(), path + ": cannot be read");
}

TEST_F(Manifests, OfAFolderAreListedByNameAndTheBrokenOnesSeparately) {
  WriteFile(folder / "b.component", "library = b.so\nprogid = B");
  WriteFile(folder / "a.component", "library = a.so\nprogid = A");
  WriteFile(folder / "c.component", "nonsense");
  WriteFile(folder / "d.txt", "nonsense as well");
  const ManifestFolder read = ReadManifestFolder(folder.Path());
  ASSERT_EQ(read.manifests.size(), 2u);
  EXPECT_THAT(read.manifests[0].progIds, ElementsAre("A"));
  EXPECT_THAT(read.manifests[1].progIds, ElementsAre("B"));
  EXPECT_THAT(read.problems,
              ElementsAre((folder / "c.component") + ", line 1: \"library = FILE\" or \"progid = NAME\" expected"));
}

TEST_F(Manifests, OfAFolderThatIsMissingAreAProblem) {
  const ManifestFolder read = ReadManifestFolder(folder / "none");
  EXPECT_TRUE(read.manifests.empty());
  EXPECT_THAT(read.problems, ElementsAre((folder / "none") + ": No such file or directory"));
}

std::vector<std::filesystem::path> FoldersWith(const char* value) {
  const EnvironmentVariable variable("QMX_COMPONENTS", value);
  return ComponentFolders();
}

TEST(ComponentFolderList, IsTakenFromTheEnvironment) {
  EXPECT_THAT(FoldersWith("/a"), ElementsAre("/a"));
  EXPECT_THAT(FoldersWith("/a/b:/c d"), ElementsAre("/a/b", "/c d"));
  EXPECT_THAT(FoldersWith(":/a::/b:"), ElementsAre("/a", "/b"));
}

TEST(ComponentFolderList, MakesRelativeFoldersAbsolute) {
  EXPECT_THAT(FoldersWith("bridges"), ElementsAre(std::filesystem::current_path() / "bridges"));
}

TEST(ComponentFolderList, IsTheInstalledFolderOtherwise) {
  const auto installed = FoldersWith("");
  ASSERT_EQ(installed.size(), 1u);
  EXPECT_TRUE(installed[0].string().ends_with("/qmxdatacopy/components")) << installed[0];
  EXPECT_EQ(FoldersWith(":"), installed);
  EXPECT_EQ(FoldersWith(nullptr), installed);
}

}  // namespace
}  // namespace qmx::test
