#include <sys/resource.h>

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fstream>

#include "tests/bridges/java/java_components.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class JavaManifests : public JavaComponents {
 protected:
  std::string ClassOf(InstalledComponents& from, const char* progId) {
    return from.CreateObject(progId).Call("getClass").ToObject().Call("getName").ToText();
  }
  std::string Refusal(const std::string& lines) {
    Write("a.component", lines);
    InstalledComponents fresh{clock, {folder.Path()}};
    const Error error = Raised([&] { fresh.CreateObject("bridge.Values"); });
    EXPECT_EQ(error.Number(), 429);
    return error.Description();
  }
  std::string ClassOf(const std::string& lines, const char* progId) {
    Write("a.component", lines);
    InstalledComponents fresh{clock, {folder.Path()}};
    return ClassOf(fresh, progId);
  }
};

TEST_F(JavaManifests, NameTheClassByTheProgIdInTheirOwnSpelling) {
  EXPECT_EQ(ClassOf(kJavaSettings + "progid = bridge.Values\n", "BRIDGE.VALUES"), "bridge.Values");
  EXPECT_EQ(ClassOf(kJavaSettings + "progid = java:bridge.Values\n", "JAVA:bridge.values"), "bridge.Values");
  EXPECT_THAT(Refusal(kJavaSettings + "progid = bridge.VALUES\n"), HasSubstr("the class bridge.VALUES is not there"));
}

TEST_F(JavaManifests, MayNameAnotherClass) {
  EXPECT_EQ(
      ClassOf(kJavaSettings + "progid = Skills.Skills\nsetting class skills.SKILLS = bridge.Values\n", "Skills.Skills"),
      "bridge.Values");
}

TEST_F(JavaManifests, MayHaveProgIdsOfAnyLettersAndLength) {
  const std::string longName = "Name." + std::string(1000, 'x');
  for (const std::string& progId : {std::string("Gr\u00F6\u00DFe.\u65E5\u8A8C.\U0001F600"), longName}) {
    const std::string lines = "progid = " + progId + "\nsetting class " + progId + " = bridge.Values\n";
    EXPECT_EQ(ClassOf(kJavaSettings + lines, progId.c_str()), "bridge.Values");
  }
}

TEST_F(JavaManifests, NameAMissingClassOfAnyLettersAndLength) {
  for (const std::string& name : {std::string("bridge.Gr\u00F6\u00DFe"), std::string("bridge.\U0001F600"),
                                  "bridge." + std::string(100000, 'x')}) {
    const Error error = Raised([&] { components.CreateObject(name); });
    EXPECT_EQ(error.Number(), 429);
    EXPECT_THAT(error.Description(), HasSubstr("the class " + name + " is not there"));
  }
}

TEST_F(JavaManifests, WithAPatternFindClassesInAnyCase) {
  EXPECT_EQ(ClassOf(kJavaSettings + "progid = bridge.*\n", "bridge.Values"), "bridge.Values");
  EXPECT_EQ(ClassOf(kJavaSettings + "progid = *\n", "BRIDGE.values"), "bridge.Values");
  EXPECT_EQ(ClassOf(kJavaSettings + "progid = *\n", "java:java.util.Date"), "java.util.Date");
}

TEST_F(JavaManifests, WithAnotherClasspathHaveAClassLoaderOfTheirOwn) {
  components.CreateObject("bridge.Values");
  std::filesystem::create_directory(folder.Path() / "lib");
  std::filesystem::copy(JAVA_TEST_JAR, folder.Path() / "lib");
  const std::string options = kJavaSettings.substr(kJavaSettings.find('\n') + 1);
  Write("b.component", "setting classpath = none.jar:lib/*\n" + options + "progid = other.*\n");
  InstalledComponents fresh{clock, {folder.Path()}};
  EXPECT_EQ(ClassOf(fresh, "OTHER.lonely"), "other.Lonely");
  const auto loader = [](const Object& object) {
    const Object found = object.Call("getClass").ToObject().Call("getClassLoader").ToObject();
    return found.Call("getClass").ToObject().Call("getSimpleName").ToText();
  };
  EXPECT_EQ(loader(fresh.CreateObject("other.Lonely")), "URLClassLoader");
  EXPECT_EQ(loader(fresh.CreateObject("bridge.Values")), "AppClassLoader");
}

TEST_F(JavaManifests, WithoutAClasspathUseTheJarsBesideThem) {
  components.CreateObject("bridge.Values");
  std::filesystem::copy(JAVA_TEST_JAR, folder.Path());
  const std::string options = kJavaSettings.substr(kJavaSettings.find('\n') + 1);
  EXPECT_EQ(ClassOf(options + "progid = other.Lonely\n", "other.Lonely"), "other.Lonely");
}

TEST_F(JavaManifests, WithOtherOptionsThanTheOneThatStartedTheJvmAreRefused) {
  components.CreateObject("bridge.Values");
  EXPECT_THAT(Refusal(kJavaSettings + "setting option = -Da=b\nprogid = bridge.Values\n"),
              AllOf(HasSubstr("the JVM was started by "),
                    HasSubstr("with other settings \"jvm\" or \"option\"; a process has one JVM")));
}

TEST_F(JavaManifests, WithAnUnknownSettingAreRefused) {
  EXPECT_THAT(Refusal("setting clazzpath = a\nprogid = bridge.Values\n"),
              HasSubstr((folder / "a.component") + ": unknown setting \"clazzpath\"; \"classpath\", \"option\", "
                                                   "\"jvm\" and \"class PROGID\" are known"));
}

bool IsJvmLoaded() {
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    if (line.ends_with("/libjvm.so")) return true;
  }
  return false;
}

TEST_F(JavaManifests, LoadNoJvmBeforeAnObjectIsMade) {
  if (IsJvmLoaded()) GTEST_SKIP() << "an earlier test of this process has loaded it";
  Raised([&] { components.CreateObject("other.Thing"); });
  EXPECT_FALSE(IsJvmLoaded());
  components.CreateObject("bridge.Values");
  EXPECT_TRUE(IsJvmLoaded());
}

TEST_F(JavaManifests, LeaveLocaleAndTimeZoneAsTheyWere) {
  std::setlocale(LC_ALL, "C");
  setenv("LANG", "de_DE.UTF-8", 1);
  setenv("LC_ALL", "C.UTF-8", 1);
  setenv("TZ", "America/New_York", 1);
  tzset();
  components.CreateObject("bridge.Values");
  EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
  EXPECT_STREQ(std::getenv("TZ"), "America/New_York");
  const std::time_t noon = 1784635200;  // 2026-07-21 12:00 UTC
  EXPECT_EQ(std::localtime(&noon)->tm_hour, 8);
}

// Of a class that the program asks for by a pattern, all jars are read.
TEST_F(JavaManifests, WithAJarThatIsNoneNameIt) {
  WriteFile(folder / "broken.jar", "no jar");
  Write("a.component", kJavaSettings + "setting classpath = broken.jar\nprogid = *\n");
  InstalledComponents fresh{clock, {folder.Path()}};
  EXPECT_THAT(Raised([&] { fresh.CreateObject("BRIDGE.missing"); }).Description(),
              HasSubstr("java.io.IOException: " + (folder / "broken.jar") +
                        " cannot be read; caused by java.util.zip.ZipException: "));
  EXPECT_EQ(ClassOf(fresh, "bridge.Values"), "bridge.Values");
}

TEST_F(JavaManifests, LeaveSignalsAndLimitsAsTheyWere) {
  if (IsJvmLoaded()) GTEST_SKIP() << "an earlier test of this process has loaded it";
  const auto signals = [] {
    std::vector<void (*)(int)> handlers;
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGUSR1}) {
      struct sigaction action {};
      sigaction(number, nullptr, &action);
      handlers.push_back(action.sa_handler);
    }
    return handlers;
  };
  const auto openFiles = [] {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    return limit.rlim_cur;
  };
  rlimit few{256, 0};
  rlimit former{};
  getrlimit(RLIMIT_NOFILE, &former);
  few.rlim_max = former.rlim_max;
  setrlimit(RLIMIT_NOFILE, &few);
  const auto before = signals();
  components.CreateObject("bridge.Values");
  EXPECT_TRUE(IsJvmLoaded());
  EXPECT_EQ(signals(), before);
  EXPECT_EQ(openFiles(), 256u);
  setrlimit(RLIMIT_NOFILE, &former);
}

}  // namespace
}  // namespace qmx::test
