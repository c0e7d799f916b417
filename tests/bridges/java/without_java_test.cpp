// A program that needs no Java pays nothing for the bridge.
#include <gmock/gmock.h>

#include "tests/bridges/java/checked_jni.h"
#include "tests/support/process.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class ACopyBesideTheJavaBridge : public testing::Test {
 protected:
  ACopyBesideTheJavaBridge() {
    std::filesystem::create_directory(folder.Path() / "log");
    EXPECT_EQ(test::Run(QMX_ADMIN, {"init", connection + ";Mode=Create", "local"}).status, 0);
    EXPECT_EQ(test::Run(ORVAN_SANDBOX, {"make", folder / "orvan.db"}).status, 0);
    WriteFile(folder / "java.component",
              "library = " JAVA_BRIDGE "\nsetting classpath = " JAVA_TEST_CLASSES "\nprogid = bridge.*\n");
  }

  // The libraries that a copy loads, as the loader reports them.
  std::string Loaded(const std::string& componentFolders) {
    const Process copy =
        test::Run(QMX_DATA_COPY,
                  {connection + ", local, tsmdm030, " + (folder / "log") + ", OrvanSandbox, " + (folder / "orvan.db")},
                  {{"QMX_COMPONENTS", componentFolders}, {"LD_DEBUG", "files"}, {"LSAN_OPTIONS", JAVA_LSAN_OPTIONS}});
    EXPECT_EQ(copy.status, 0) << copy.err;
    return copy.err;
  }

  TempFolder folder;
  const std::string connection = "Provider=SQLite;Data Source=" + (folder / "local.db");
};

TEST_F(ACopyBesideTheJavaBridge, LoadsNeitherTheBridgeNorAJvm) {
  EXPECT_THAT(Loaded(SANDBOX_COMPONENTS ":" + folder.Path().string()),
              AllOf(HasSubstr("orvan_sandbox.so"), Not(HasSubstr("qmx_java.so")), Not(HasSubstr("libjvm.so"))));
}

TEST_F(ACopyBesideTheJavaBridge, LoadsBothForTheFirstJavaObject) {
  WriteFile(folder / "java.component",
            std::string("library = " JAVA_BRIDGE "\nsetting classpath = " JAVA_TEST_CLASSES
                        "\nsetting class ServiceTypes.ServiceTypesManager = bridge.FailingErp"
                        "\nprogid = ServiceTypes.ServiceTypesManager\n") +
                kCheckJni);
  EXPECT_THAT(Loaded(folder.Path()), AllOf(HasSubstr("qmx_java.so"), HasSubstr("libjvm.so"), ShowsNoWrongJni()));
}

}  // namespace
}  // namespace qmx::test
