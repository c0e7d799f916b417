// Whole copies from an ERP in Java that fails: none hangs, crashes or leaves its table marked as being copied.
#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <cstdlib>

#include "tests/support/process.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;

class AFailingErpInJava : public testing::TestWithParam<const char*> {
 protected:
  AFailingErpInJava() {
    std::filesystem::create_directory(folder.Path() / "log");
    EXPECT_EQ(test::Run(QMX_ADMIN, {"init", connection + ";Mode=Create", "local"}).status, 0);
  }

  // The JVM checks every JNI call.
  Process Copy(const std::string& failing, const std::string& settings = "", int failingJniCall = 0) {
    WriteFile(folder / "a.component", "library = " JAVA_BRIDGE "\nsetting classpath = " JAVA_TEST_CLASSES
                                      "\nsetting class ServiceTypes.ServiceTypesManager = bridge.FailingErp"
                                      "\nprogid = ServiceTypes.ServiceTypesManager\nsetting option = -Dbridge.fail=" +
                                          (failing.empty() ? "nowhere" : failing) +
                                          "\nsetting option = -Xcheck:jni\nsetting option = -Xmx64m\n" + settings);
    const Process copy =
        test::Run(QMX_DATA_COPY, {connection + ", local, tsmdm030, " + (folder / "log") + ", orvan, 100"},
                  {{"QMX_COMPONENTS", folder.Path()},
                   {"LSAN_OPTIONS", JAVA_LSAN_OPTIONS},
                   {"ASAN_OPTIONS", "handle_segv=0"},
                   {"QMX_TEST_FAIL_JNI_CALL", std::to_string(failingJniCall)}});
    EXPECT_THAT(copy.err + copy.out, testing::Not(HasSubstr("native method")));
    return copy;
  }

  TempFolder folder;
  const std::string connection = "Provider=SQLite;Data Source=" + (folder / "local.db");
};

TEST_P(AFailingErpInJava, FailsTheCopyAndReleasesItsTable) {
  const Process failed = Copy(GetParam());
  EXPECT_EQ(failed.status, 1) << failed.err;
  EXPECT_THAT(failed.err, HasSubstr(std::string("java.lang.IllegalStateException: fails in ") + GetParam()));
  EXPECT_THAT(failed.err, HasSubstr("at bridge.FailingErp.in(FailingErp.java:"));
  const Process again = Copy("");
  EXPECT_EQ(again.status, 0) << again.err;
}

INSTANTIATE_TEST_SUITE_P(InEachPlace, AFailingErpInJava,
                         testing::Values("constructor", "initialize", "list", "hasMoreElements", "nextElement",
                                         "getter", "initializer", "close"));

TEST_F(AFailingErpInJava, WhoseStackOverflowsFailsTheCopy) {
  const Process failed = Copy("deep in getter");
  EXPECT_EQ(failed.status, 1) << failed.err;
  EXPECT_THAT(failed.err, HasSubstr("java.lang.StackOverflowError"));
  EXPECT_EQ(Copy("").status, 0);
}

TEST_F(AFailingErpInJava, WhoseMemoryRunsOutFailsTheCopy) {
  const Process failed = Copy("memory in getter");
  EXPECT_EQ(failed.status, 1) << failed.err;
  EXPECT_THAT(failed.err, HasSubstr("error 7, Java: java.lang.OutOfMemoryError: Java heap space"));
  EXPECT_EQ(Copy("").status, 0);
}

// The program's crash handler does not mistake what the JVM makes of SIGSEGV itself for a crash.
TEST_F(AFailingErpInJava, WhichReadsNullsIsCopied) {
  const Process copied = Copy("null in getter");
  EXPECT_EQ(copied.status, 0) << copied.err;
  EXPECT_EQ(copied.err, "");
}

// The table is released each time: a copy that finds it in progress ends with 3.
TEST_F(AFailingErpInJava, WhoseJvmFailsAtAnyCallFailsTheCopy) {
  const int step = std::getenv("QMX_TEST_EVERY_JNI_CALL") ? 1 : 9;
  int failed = 0;
  for (int call = 1;; call += step) {
    const Process copy = Copy("", "setting jvm = " FAILING_JVM "\n", call);
    if (copy.err.find("A JNI call fails.") == std::string::npos) break;  // it has fewer calls
    ASSERT_THAT(copy.status, testing::AnyOf(0, 1)) << call << ": " << copy.err;
    if (copy.status == 0) continue;  // a class that is looked for and need not be there
    EXPECT_THAT(copy.err, HasSubstr("because of error ")) << call;
    failed += step;
  }
  EXPECT_GT(failed, 60);
  EXPECT_EQ(Copy("").status, 0);
}

TEST_F(AFailingErpInJava, WhichEndsTheProcessIsNamed) {
  const Process ended = Copy("exit in getter");
  EXPECT_EQ(ended.status, 2) << ended.err;
  EXPECT_THAT(ended.err, HasSubstr("during getServiceType of ServiceTypes.ServiceTypesManager"));
}

// The program installs its crash handler before the JVM's, which uses SIGSEGV itself and passes other signals on.
TEST_F(AFailingErpInJava, WhichCrashesIsNamed) {
  const Process crashed = Copy("crash in getter");
  EXPECT_EQ(crashed.status, 128 + SIGSEGV) << crashed.err;
  EXPECT_THAT(crashed.err,
              HasSubstr("SIGSEGV ended the run during getServiceType of ServiceTypes.ServiceTypesManager"));
}

TEST_F(AFailingErpInJava, WhoseThreadsRunOnDoesNotKeepTheProcess) {
  const auto start = std::chrono::steady_clock::now();
  const Process copied = Copy("thread in initialize");
  EXPECT_EQ(copied.status, 0) << copied.err;
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

}  // namespace
}  // namespace qmx::test
