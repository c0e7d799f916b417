// Whole copies of service types from an ERP in Java that fails (classes/bridge/FailingErp.java). The JVM checks every
// JNI call.
#pragma once

#include <gmock/gmock.h>

#include <memory>

#include "tests/bridges/java/checked_jni.h"
#include "tests/bridges/java/first_text.h"
#include "tests/support/process.h"

namespace qmx::test {

class FailingErpInJava : public testing::Test {
 protected:
  FailingErpInJava() {
    std::filesystem::create_directory(folder.Path() / "log");
    EXPECT_EQ(test::Run(QMX_ADMIN, {"init", connection + ";Mode=Create", "local"}).status, 0);
  }

  // Fails in that place, or nowhere.
  std::unique_ptr<RunningProcess> Start(const std::string& place, const std::string& settings = "") {
    WriteFile(folder / "a.component", "library = " JAVA_BRIDGE "\nsetting classpath = " JAVA_TEST_CLASSES
                                      "\nsetting class ServiceTypes.ServiceTypesManager = bridge.FailingErp"
                                      "\nsetting class ServiceTypes.ServiceTypes = bridge.FailingErp$Type"
                                      "\nsetting class audit.auditCriteria = bridge.FailingAudit$Criteria"
                                      "\nsetting class audit.period = bridge.FailingAudit$Period"
                                      "\nsetting class audit.Parameter = bridge.FailingAudit$Parameter"
                                      "\nsetting class audit.AuditReader = bridge.FailingAudit$Reader"
                                      "\nsetting class audit.RecordStatus = bridge.FailingAudit$RecordStatus"
                                      "\nprogid = ServiceTypes.*\nprogid = audit.*\nsetting option = -Dbridge.fail=" +
                                          (place.empty() ? "nowhere" : place) + "\nsetting option = -Xmx64m\n" +
                                          kCheckJni + settings);
    return std::make_unique<RunningProcess>(
        QMX_DATA_COPY, std::vector{connection + ", local, tsmdm030, " + (folder / "log") + ", orvan, 100"},
        environment);
  }
  Process Copy(const std::string& place, const std::string& settings = "") {
    const Process copy = Start(place, settings)->Wait();
    EXPECT_THAT(copy.err + copy.out, ShowsNoWrongJni());
    return copy;
  }

  std::string Sql(const std::string& statement) { return FirstText(folder / "local.db", statement); }

  TempFolder folder;
  const std::string connection = "Provider=SQLite;Data Source=" + (folder / "local.db");
  std::map<std::string, std::string> environment = {
      {"QMX_COMPONENTS", folder.Path()}, {"LSAN_OPTIONS", JAVA_LSAN_OPTIONS}, {"ASAN_OPTIONS", "handle_segv=0"}};
};

}  // namespace qmx::test
