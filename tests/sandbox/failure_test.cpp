// What the user reads when the sandbox ERP cannot do what it is asked.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/sandbox/sandbox_erp.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

std::string Told(const Error& error) {
  return std::to_string(error.Number()) + " " + error.Source() + ": " + error.Description();
}

// Root may read everything, so a test of rights has to be somebody else meanwhile.
class SomebodyElse {
 public:
  SomebodyElse() : before_(geteuid()) {
    if (before_ != 0) return;
    EXPECT_EQ(0, seteuid(65534));
  }
  ~SomebodyElse() { EXPECT_EQ(0, seteuid(before_)); }
  SomebodyElse(const SomebodyElse&) = delete;
  SomebodyElse& operator=(const SomebodyElse&) = delete;

 private:
  uid_t before_;
};

class Failures : public testing::Test {
 protected:
  std::string Initializing(const std::string& businessComponent) {
    const Object manager = erp_.Create("ServiceTypes.ServiceTypesManager");
    return Told(Raised([&] { manager.Call("initialize", businessComponent); }));
  }

  TempFolder folder_;
  SandboxErp erp_;
};

TEST_F(Failures, OfAMissingFileNameIt) {
  const std::string path = (folder_.Path() / "none.db").string();
  EXPECT_EQ("53 OrvanSandbox: There is no sandbox file \"" + path +
                "\". Check the path in the business component, or make the file with: orvan-sandbox make " + path,
            Initializing("OrvanSandbox, " + path));
  EXPECT_FALSE(std::filesystem::exists(path)) << "a file that was only asked for must not be made";
}

TEST_F(Failures, OfAFileThatIsNoDatabaseNameIt) {
  const std::string path = (folder_.Path() / "letter.txt").string();
  WriteFile(path, "Dear Sir or Madam, this is a letter of some length and no database at all.\n");
  EXPECT_EQ("75 OrvanSandbox: The sandbox file \"" + path +
                "\" cannot be used: file is not a database. Check that it was made by orvan-sandbox and that this "
                "user may read it.",
            Initializing("OrvanSandbox, " + path));
}

TEST_F(Failures, OfAFileThatMayNotBeReadNameIt) {
  const std::string path = (folder_.Path() / "secret.db").string();
  WriteFile(path, "");
  chmod(path.c_str(), 0);
  chmod(folder_.Path().c_str(), 0755);
  const SomebodyElse nobody;
  EXPECT_EQ("75 OrvanSandbox: The sandbox file \"" + path +
                "\" cannot be used: unable to open database file. Check that it was made by orvan-sandbox and that "
                "this user may read it.",
            Initializing("OrvanSandbox, " + path));
}

TEST_F(Failures, OfAFolderInPlaceOfAFileNameIt) {
  EXPECT_EQ(0u, Initializing("OrvanSandbox, " + folder_.Path().string())
                    .find("53 OrvanSandbox: There is no sandbox file \"" + folder_.Path().string() + "\"."));
}

TEST_F(Failures, OfADatabaseWithoutTheTableNameBoth) {
  const std::string path = (folder_.Path() / "other.db").string();
  orvan::Database::Create(path)->Execute("CREATE TABLE something (other)");
  EXPECT_EQ("75 ServiceTypes.ServiceTypesManager: The file \"" + path +
                "\" has no table tsmdm030. Make a complete one with: orvan-sandbox make FILE",
            Initializing("OrvanSandbox, " + path));
}

TEST_F(Failures, OfAnUnknownComponentNameIt) {
  const std::string answer =
      "\" is unknown. The sandbox ERP answers to \"OrvanSandbox, PATH\", where PATH is a file made by orvan-sandbox.";
  for (const char* unknown : {"OrvanLive, /tmp/x.db", "OrvanSandbox", "OrvanSandbox, ", "", ", /tmp/x.db"})
    EXPECT_EQ("5 ServiceTypes.ServiceTypesManager: The business component \"" + std::string(unknown) + answer,
              Initializing(unknown));
}

TEST_F(Failures, DontStopAManagerFromBeingInitializedRightAfterwards) {
  const Object manager = erp_.Create("ServiceTypes.ServiceTypesManager");
  Raised([&] { manager.Call("initialize", "OrvanSandbox, /no/such/file"); });
  manager.Call("initialize", "  orvansandbox ,  " + erp_.Path() + " ");
  EXPECT_FALSE(manager.Call("List", "", "ZZZ").ToObject().Call("hasMoreElements").ToBoolean());
}

TEST_F(Failures, OfAWrongNumberOfArgumentsSayHowManyAreWanted) {
  const Object manager = erp_.Manager("ServiceTypes.ServiceTypesManager");
  EXPECT_EQ("450 ServiceTypes.ServiceTypesManager: List of ServiceTypes.ServiceTypesManager takes 2 arguments, not 1.",
            Told(Raised([&] { manager.Call("List", ""); })));
  EXPECT_EQ(
      "450 ServiceTypes.ServiceTypesManager: initialize of ServiceTypes.ServiceTypesManager takes 1 argument, not 2.",
      Told(Raised([&] { manager.Call("initialize", "OrvanSandbox", erp_.Path()); })));
  EXPECT_EQ("450 java.util.Enumeration: nextElement of java.util.Enumeration takes 0 arguments, not 1.",
            Told(Raised([&] { manager.Call("List", "", "Z").ToObject().Call("nextElement", 1); })));
  EXPECT_EQ("450 ServiceTypes.ServiceTypes: getServiceType of ServiceTypes.ServiceTypes takes 0 arguments, not 1.",
            Told(Raised([&] { erp_.Create("ServiceTypes.ServiceTypes").Call("getServiceType", 1); })));
}

TEST_F(Failures, OfACallOutOfOrderSayWhatComesFirst) {
  const std::string closed =
      "5 ServiceTypes.ServiceTypesManager: ServiceTypes.ServiceTypesManager is not open. Call initialize with "
      "\"OrvanSandbox, PATH\" first.";
  const Object manager = erp_.Create("ServiceTypes.ServiceTypesManager");
  EXPECT_EQ(closed, Told(Raised([&] { manager.Call("List", "", "ZZZ"); })));
  manager.Call("Close");  // closing what is not open does no harm
  manager.Call("initialize", erp_.BusinessComponent());
  manager.Call("Close");
  EXPECT_EQ(closed, Told(Raised([&] { manager.Call("List", "", "ZZZ"); })));
}

TEST_F(Failures, OfReadingPastTheEndNameTheCallThatIsNeededFirst) {
  const Object types = erp_.Manager("ServiceTypes.ServiceTypesManager").Call("List", "", "ZZZ").ToObject();
  EXPECT_EQ("5 java.util.Enumeration: There is no further record of tsmdm030. Ask hasMoreElements first.",
            Told(Raised([&] { types.Call("nextElement"); })));
}

TEST_F(Failures, OfAnUnknownMemberNameIt) {
  EXPECT_EQ("438 ServiceTypes.ServiceTypes: ServiceTypes.ServiceTypes has no member \"getSkill\". Check the spelling.",
            Told(Raised([&] { erp_.Create("ServiceTypes.ServiceTypes").Call("getSkill"); })));
}

TEST_F(Failures, OfABoundOfTheWrongTypeShowIt) {
  const Object types = erp_.Manager("ServiceTypes.ServiceTypesManager");
  EXPECT_EQ("13 Sandbox: The argument \"7\" is not a text. Pass a text.",
            Told(Raised([&] { types.Call("List", 7, "ZZZ"); })));
  const Object scales = erp_.Manager("PriorityTimeScale.PriorityTimeScaleManager");
  EXPECT_EQ("13 Sandbox: The argument \"ZZZ\" is not a number. Pass a number.",
            Told(Raised([&] { scales.Call("List", 0, "ZZZ"); })));
}

TEST_F(Failures, OfTheFileWhileItIsReadNameFileAndStatement) {
  const Object manager = erp_.Manager("ServiceTypes.ServiceTypesManager");
  const Object types = manager.Call("List", "", "ZZZ").ToObject();
  erp_.Run("DROP TABLE tsmdm030");
  const Error error = Raised([&] { types.Call("hasMoreElements"); });
  EXPECT_EQ(-2147467259, error.Number());
  EXPECT_EQ(
      "The sandbox file \"" + erp_.Path() +
          "\" failed: no such table: tsmdm030, during: SELECT \"cstp\", \"desc\", \"proc\", \"ract\" FROM tsmdm030 "
          "WHERE \"cstp\" BETWEEN ? AND ? ORDER BY \"cstp\"",
      error.Description());
}

}  // namespace
}  // namespace qmx::test
