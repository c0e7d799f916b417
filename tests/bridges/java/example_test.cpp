// The example of docs/java.md is the one that is built, and it works.
#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

#include "platform/components/installed_components.h"
#include "tests/bridges/java/checked_jni.h"
#include "tests/bridges/java/first_text.h"
#include "tests/support/fake_clock.h"
#include "tests/support/process.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;

std::string Content(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

class TheJavaExample : public testing::Test {
 protected:
  static void SetUpTestSuite() { CheckJniOfEveryJvm(); }
  void SetUp() override { testing::internal::CaptureStderr(); }
  void TearDown() override { EXPECT_THAT(testing::internal::GetCapturedStderr(), ShowsNoWrongJni()); }
};

TEST_F(TheJavaExample, IsTheOneOnThePage) {
  const std::string docs = JAVA_DOCS;
  const std::string page = Content(docs + "/java.md");
  for (const char* const file : {"ServiceTypes/ServiceTypesManager.java", "ServiceTypes/ServiceTypes.java"}) {
    const std::string source = Content(docs + "/examples/java/" + file);
    ASSERT_FALSE(source.empty()) << file;
    EXPECT_THAT(page, HasSubstr("```java\n" + source + "```\n"));
  }
  EXPECT_THAT(page, HasSubstr("```\n" + Content(docs + "/examples/java/service_types_java.component") + "```\n"));
}

TEST_F(TheJavaExample, ListsItsServiceTypes) {
  FakeClock clock;
  InstalledComponents components{clock, {JAVA_EXAMPLE}};
  const Object manager = components.CreateObject("ServiceTypes.ServiceTypesManager");
  manager.Call("initialize", "orvan, 100");
  const Object types = manager.Call("List", "J", "ZZZ").ToObject();
  ASSERT_EQ(types.Call("hasMoreElements"), Variant(true));
  const Object type = types.Call("nextElement").ToObject();
  EXPECT_EQ(type.Call("getServiceType"), Variant("PM"));
  EXPECT_EQ(type.Call("getServiceTypeDescription"), Variant("Preventive maintenance"));
  EXPECT_TRUE(type.Call("getServiceProcedure").IsNull());
  EXPECT_EQ(type.Call("getavailabilityType"), Variant("STD"));
  EXPECT_EQ(types.Call("nextElement").ToObject().Call("getServiceType"), Variant("REP"));
  EXPECT_EQ(types.Call("hasMoreElements"), Variant(false));
  manager.Call("Close");
  EXPECT_THAT(Raised([&] { manager.Call("List", "", "ZZZ"); }).Description(),
              HasSubstr("java.lang.IllegalStateException: initialize has not been called"));
}

TEST_F(TheJavaExample, IsCopied) {
  TempFolder folder;
  const std::map<std::string, std::string> environment = {{"QMX_COMPONENTS", JAVA_EXAMPLE},
                                                          {"LSAN_OPTIONS", JAVA_LSAN_OPTIONS}};
  const std::string connection = "Provider=SQLite;Data Source=" + (folder / "local.db");
  ASSERT_EQ(test::Run(QMX_ADMIN, {"init", connection + ";Mode=Create", "local"}).status, 0);
  std::filesystem::create_directory(folder.Path() / "log");
  const Process copy =
      test::Run(QMX_DATA_COPY, {connection + ", local, tsmdm030, " + (folder / "log") + ", orvan, 100"}, environment);
  EXPECT_EQ(copy.status, 0) << copy.err;
  EXPECT_THAT(copy.err, ShowsNoWrongJni());
  EXPECT_EQ(FirstText(folder / "local.db", "select group_concat(cstp || ' ' || dsca || ' ' || ract) from tsmdm030"),
            "INS Installation STD,PM Preventive maintenance STD,REP Repair STD");
  EXPECT_EQ(FirstText(folder / "local.db", "select count(*) from tsmdm030 where prod is null"), "3");
}

}  // namespace
}  // namespace qmx::test
