// Components of the Java classes beside these tests. The JVM checks every JNI call and lives in Berlin.
#pragma once

#include <gmock/gmock.h>

#include "platform/components/installed_components.h"
#include "tests/bridges/java/checked_jni.h"
#include "tests/support/fake_clock.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {

inline const std::string kJavaSettings = "setting classpath = " JAVA_TEST_CLASSES "\n" + std::string(kCheckJni) +
                                         "setting option = -Duser.timezone=Europe/Berlin\nsetting option = -Xmx64m\n";

class JavaComponents : public testing::Test {
 protected:
  JavaComponents() { Write("a.component", kJavaSettings + "progid = bridge.*\nprogid = java:java.util.*\n"); }
  void SetUp() override { testing::internal::CaptureStderr(); }
  void TearDown() override { EXPECT_THAT(testing::internal::GetCapturedStderr(), ShowsNoWrongJni()); }

  void Write(const std::string& name, const std::string& lines) {
    WriteFile(folder / name, "library = " JAVA_BRIDGE "\n" + lines);
  }

  TempFolder folder;
  FakeClock clock;
  InstalledComponents components{clock, {folder.Path()}};
};

}  // namespace qmx::test
