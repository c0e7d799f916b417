// The settings of the commands: from the command line, from the environment, from a file.
#include <fstream>

#include "tests/tools/qmxadmin/copying.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class Settings : public Copying {
 protected:
  Settings() : Copying(DriversUnderTest().front().make()) {
    for (const char* logs : {"file", "environment", "argument"}) std::filesystem::create_directory(folder_ / logs);
    environment_["QMX_SETTINGS"] = folder_ / "settings";
  }

  void WriteSettings(const std::string& more = "") {
    WriteFile(folder_ / "settings", "QMX_CONNECTION=\"" + base_->ConnectionText() + "\"\nQMX_DATABASE=\"\"\n" + more);
  }
  std::string OwnLogs() const { return "QMX_LOGS=" + (folder_ / "file") + "\n"; }
  std::string OwnComponent() const { return "QMX_COMPONENT=\"" + component_ + "\"\n"; }

  Process Admin(const std::vector<std::string>& arguments) { return test::Run(admin_, arguments, environment_); }
  bool HasLog(const std::string& folder) const { return std::filesystem::exists(folder_ / (folder + "/tsmdm030.log")); }
};

TEST_F(Settings, OfTheFileSufficeForEveryCommand) {
  WriteSettings(OwnLogs() + OwnComponent());
  EXPECT_EQ(Admin({"init"}).status, 0);
  const Process copy = Admin({"copy", "tsmdm030"});
  EXPECT_EQ(copy.status, 0) << copy.err;
  EXPECT_TRUE(HasLog("file"));
  const Process verify = Admin({"verify", "tsmdm030"});
  EXPECT_EQ(verify.status, 0) << verify.err;
  EXPECT_THAT(verify.out, "tsmdm030: 3 in the ERP, 3 here: no difference\n");
  const Process check = Admin({"check"});
  EXPECT_EQ(check.status, 0) << check.out;
  EXPECT_THAT(check.out, AllOf(HasSubstr("log folder: " + (folder_ / "file") + " can be written\n"),
                               HasSubstr("ServiceTypes.ServiceTypesManager: answers and has records\n")));
}

TEST_F(Settings, OfTheEnvironmentTakePrecedenceOverTheFile) {
  WriteSettings(OwnLogs() + OwnComponent());
  environment_["QMX_LOGS"] = folder_ / "environment";
  EXPECT_EQ(Admin({"copy", "tsmdm030"}).status, 0);
  EXPECT_TRUE(HasLog("environment"));
  EXPECT_FALSE(HasLog("file"));
}

TEST_F(Settings, OfTheCommandLineTakePrecedenceOverAll) {
  WriteSettings(OwnLogs() + "QMX_COMPONENT=\"OrvanSandbox, /nowhere\"\n");
  environment_["QMX_LOGS"] = folder_ / "environment";
  const Process copy = Admin({"copy", "tsmdm030", "--logs", folder_ / "argument", "--component", component_});
  EXPECT_EQ(copy.status, 0) << copy.err;
  EXPECT_TRUE(HasLog("argument"));
  EXPECT_FALSE(HasLog("environment"));
  EXPECT_FALSE(HasLog("file"));
}

TEST_F(Settings, ThatAreMissingAreNamedWithThePlacesForThem) {
  WriteSettings();
  environment_.erase("QMX_COMPONENTS");
  const Process copy = Admin({"copy", "tsmdm030", "--logs", folder_ / "argument"});
  EXPECT_EQ(copy.status, 2);
  EXPECT_EQ(copy.err, "--component is required. QMX_COMPONENT can be set in the environment or in " +
                          (folder_ / "settings") + " instead.\nRun with --help for more information.\n");
  EXPECT_THAT(Admin({"copy", "tsmdm030"}).err, StartsWith("--logs is required. QMX_LOGS can be set in"));
  environment_["QMX_SETTINGS"] = "";
  EXPECT_EQ(Admin({"status"}).err,
            "CONNECTION is required. QMX_CONNECTION can be set in the environment instead.\n"
            "Run with --help for more information.\n");
}

TEST_F(Settings, HaveANearMissInTheFoldersOfTheManifests) {
  WriteSettings();
  environment_["QMX_COMPONENTS"] = SANDBOX_COMPONENTS;
  EXPECT_THAT(Admin({"verify", "tsmdm030"}).err,
              HasSubstr("\nQMX_COMPONENTS is set, but it names the folders of the manifests. The ERP's business "
                        "component is QMX_COMPONENT, without an S.\n"));
  EXPECT_THAT(Admin({"copy", "tsmdm030"}).err, Not(HasSubstr("QMX_COMPONENTS")));  // --logs is what is missing
}

TEST_F(Settings, InALineThatCannotBeReadAreReportedAndTheOthersUsed) {
  WriteSettings("export QMX_CONNECTION=\"DSN=local;PWD=rose\"\n");
  const Process status = Admin({"status"});
  EXPECT_EQ(status.status, 0);
  EXPECT_EQ(status.err, (folder_ / "settings") + ", line 3: NAME=VALUE is expected. The line is ignored.\n");
  EXPECT_THAT(status.out, HasSubstr("tsmdm030"));
}

}  // namespace
}  // namespace qmx::test
