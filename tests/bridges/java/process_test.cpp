// How the JVM is found, and how a process with one ends.
#include "tests/support/process.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>

#include "tests/bridges/java/checked_jni.h"
#include "tests/bridges/java/java_components.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::ExitedWithCode;
using testing::HasSubstr;

class AProcessWithJava : public testing::Test {
 protected:
  // `qmxadmin components`, which starts the JVM to say what it is.
  Process Show(const std::string& lines, std::map<std::string, std::string> environment = {}) {
    WriteFile(folder / "a.component", std::string("library = " JAVA_BRIDGE "\n") + kCheckJni + lines);
    environment.insert({{"QMX_COMPONENTS", folder.Path()}, {"LSAN_OPTIONS", JAVA_LSAN_OPTIONS}});
    Process shown = test::Run(QMX_ADMIN, {"components"}, environment);
    EXPECT_THAT(shown.err, ShowsNoWrongJni());
    return shown;
  }

  TempFolder folder;
};

TEST_F(AProcessWithJava, ShowsTheJvmItsClasspathAndWhetherEachClassIsThere) {
  const Process run = Show("setting classpath = " JAVA_TEST_CLASSES
                           "\nprogid = bridge.Values\nprogid = bridge.Missing\nprogid = bridge.Failures$Abstract\n");
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_THAT(run.out,
              AllOf(HasSubstr("\n  library " JAVA_BRIDGE ": loads\n  JVM: /"), HasSubstr("/libjvm.so\n  version: "),
                    HasSubstr("\n  classpath: " JAVA_TEST_CLASSES "\n  bridge.Values\n  bridge.Missing: "),
                    HasSubstr("the class bridge.Missing is not there; the classpath is " JAVA_TEST_CLASSES),
                    HasSubstr("the class bridge.Failures$Abstract is abstract")));
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(Show("setting classpath = " JAVA_TEST_CLASSES "\nprogid = bridge.Values\n").status, 0);
}

TEST_F(AProcessWithJava, TakesTheJvmOfTheManifestAndNoOther) {
  const Process run = Show("setting jvm = jre\nprogid = bridge.Values\n", {{"JAVA_HOME", "/nowhere"}});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("does not load: it refused with error 429, Java: no JVM can be started; " +
                                 (folder / "jre") + ": " + (folder / "jre") +
                                 ": cannot open shared object file: No such file or directory. Install "
                                 "default-jre-headless, or name a JVM with \"setting jvm\" or JAVA_HOME\n"));
}

TEST_F(AProcessWithJava, TakesTheJvmOfAFolder) {
  const std::string library = JAVA_JVM;
  const std::string home = library.substr(0, library.find("/lib/server"));
  const std::string classes = "setting classpath = " JAVA_TEST_CLASSES "\nprogid = bridge.Values\n";
  EXPECT_THAT(Show("setting jvm = " + home + "\n" + classes).out, HasSubstr("\n  JVM: " + library + "\n"));
  EXPECT_THAT(Show(classes, {{"JAVA_HOME", home}}).out, HasSubstr("\n  JVM: " + library + "\n"));
}

TEST_F(AProcessWithJava, NamesEveryPlaceIfNoJvmWasFound) {
  // A folder of that name without a JVM stands for a machine without one.
  const Process run = Show("setting jvm = .\nprogid = bridge.Values\n");
  EXPECT_THAT(run.out, HasSubstr("no JVM can be started; " + (folder / "lib/server/libjvm.so") + ": "));
  const Process fallback = Show("progid = bridge.Values\n", {{"JAVA_HOME", "/nowhere"}});
  const std::string fallbackJvm = "/usr/lib/jvm/default-java/lib/server/libjvm.so";
  EXPECT_THAT(fallback.out, testing::AnyOf(HasSubstr("\n  JVM: " + fallbackJvm + "\n"),
                                           AllOf(HasSubstr("; /nowhere/lib/server/libjvm.so: "),
                                                 HasSubstr("; " + fallbackJvm + ": "))));
}

TEST_F(AProcessWithJava, RefusesALibraryThatIsNoJvmAndOneThatIsTooOld) {
  EXPECT_THAT(Show("setting jvm = " JAVA_BRIDGE "\nprogid = bridge.Values\n").out,
              HasSubstr(JAVA_BRIDGE ": it has no function JNI_CreateJavaVM."));
  EXPECT_THAT(Show("setting jvm = " OLD_JVM "\nprogid = bridge.Values\n").out,
              HasSubstr(OLD_JVM ": it is too old: Java 11 or newer is needed."));
}

TEST_F(AProcessWithJava, BeginsWithASmallHeapUnlessTheManifestNamesAnother) {
  const auto heapWith = [&](const std::string& lines) {
    const std::string log = folder / "heap";
    Show("setting option = -Xlog:gc+init:file=" + log + "\nsetting classpath = " JAVA_TEST_CLASSES "\n" + lines +
         "progid = bridge.Values\n");
    return ReadFile(log);
  };
  EXPECT_THAT(heapWith(""), HasSubstr("Heap Initial Capacity: 8M\n"));
  EXPECT_THAT(heapWith("setting option = -Xms32m\n"), HasSubstr("Heap Initial Capacity: 32M\n"));
}

TEST_F(AProcessWithJava, ShowsWhatTheJvmPrintsAboutAnOption) {
  EXPECT_THAT(Show("setting option = -Xmxabc\nprogid = bridge.Values\n").out,
              HasSubstr(": it refuses an option: Invalid maximum heap size: -Xmxabc. "));
  EXPECT_THAT(Show("setting option = -Xnonsense\nprogid = bridge.Values\n").out,
              HasSubstr("Unrecognized option: -Xnonsense"));
}

TEST_F(AProcessWithJava, MayChooseAnotherCollector) {
  const Process run =
      Show("setting option = -XX:+UseParallelGC\nsetting classpath = " JAVA_TEST_CLASSES "\nprogid = bridge.Values\n");
  EXPECT_EQ(run.status, 0) << run.out << run.err;
}

// Without the capture of standard error, which death tests need themselves.
class ItsEndDeathTest : public JavaComponents {
 protected:
  void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
  void TearDown() override {}
};

[[noreturn]] void CallAndExit(InstalledComponents& components, const char* member) {
  const Object failures = components.CreateObject("bridge.Failures");
  failures.Call(std::string_view(member));
  std::exit(3);
}

TEST_F(ItsEndDeathTest, WaitsTwoSecondsForThreadsOfJavaAndNoLonger) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EXIT(CallAndExit(components, "stayAwake"), ExitedWithCode(3), ShowsNoWrongJni());
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

TEST_F(ItsEndDeathTest, LetsTheJvmEndInOrder) {
  // The process that ends has a folder of its own, and this one's environment.
  setenv("QMX_TEST_NOTE", (folder / "note").c_str(), 0);
  const std::string note = std::getenv("QMX_TEST_NOTE");
  const auto leaveNote = [&] {
    components.CreateObject("bridge.Failures").Call("leaveNote", note);
    std::exit(3);
  };
  EXPECT_EXIT(leaveNote(), ExitedWithCode(3), ShowsNoWrongJni());
  EXPECT_TRUE(std::filesystem::exists(note));
  unsetenv("QMX_TEST_NOTE");
}

TEST_F(ItsEndDeathTest, ComesWhileJavaObjectsAreStillHeld) {
  EXPECT_EXIT(CallAndExit(components, "getZone"), ExitedWithCode(3), ShowsNoWrongJni());
  const auto releaseLate = [&] {
    static Object kept;
    std::atexit([] { kept = Object(); });  // runs after the JVM has been let go
    kept = components.CreateObject("bridge.Failures");
    std::exit(4);
  };
  EXPECT_EXIT(releaseLate(), ExitedWithCode(4), ShowsNoWrongJni());
}

TEST_F(ItsEndDeathTest, LeavesASystemExitOfJavaToTheExitGuard) {
  const auto guarded = [&] {
    std::atexit([] { _exit(5); });
    CallAndExit(components, "exit");
  };
  EXPECT_EXIT(guarded(), ExitedWithCode(5), ShowsNoWrongJni());
}

}  // namespace
}  // namespace qmx::test
