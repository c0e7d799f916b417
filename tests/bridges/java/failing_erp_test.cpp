// Whole copies from an ERP in Java that fails: none hangs, crashes or leaves its table marked as being copied.
#include "tests/bridges/java/failing_erp.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class AFailingErpInJava : public FailingErpInJava, public testing::WithParamInterface<const char*> {};

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

TEST_F(AFailingErpInJava, LeavesTheStackTraceInTheTrace) {
  environment["QMX_TRACE"] = folder / "trace.jsonl";
  EXPECT_EQ(Copy("getter").status, 1);
  EXPECT_THAT(ReadFile(folder / "trace.jsonl"),
              AllOf(HasSubstr("\"member\":\"getServiceType\",\"args\":[],\"error\":"),
                    HasSubstr("\"details\":\"java.lang.IllegalStateException: fails in getter\\n\\tat "
                              "bridge.FailingErp.in(FailingErp.java:")));
}

// The JVM, whose own handlers of signals would end the process, leaves them to the program.
TEST_F(AFailingErpInJava, IsInterruptedBetweenTwoOfItsRecords) {
  const auto run = Start("no end of its listing");
  while (Sql("select count(*) >= 100 from tsmdm030") != "1") {
    ASSERT_FALSE(run->HasEnded()) << run->Wait().err;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  run->Signal(SIGTERM);
  const Process interrupted = run->Wait();
  EXPECT_EQ(interrupted.status, 1) << interrupted.err;
  EXPECT_THAT(interrupted.err, AllOf(HasSubstr("SIGTERM: the copy ends at its next call to the ERP."),
                                     HasSubstr("error 18, Interrupted: SIGTERM asked the program to end.")));
  EXPECT_EQ(Sql("select in_use from tstables"), "0");
  EXPECT_EQ(Copy("").status, 0);
}

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
    environment["QMX_TEST_FAIL_JNI_CALL"] = std::to_string(call);
    const Process copy = Copy("", "setting jvm = " FAILING_JVM "\n");
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
