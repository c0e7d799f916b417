#include "tests/bridges/java/java_components.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class JavaErrors : public JavaComponents {
 protected:
  Error Raised(const char* member) {
    return test::Raised([&] { failures.Call(std::string_view(member)); });
  }
  Error NotCreated(const char* progId) {
    const Error error = test::Raised([&] { components.CreateObject(progId); });
    EXPECT_EQ(error.Number(), 429);
    return error;
  }
  Object failures = components.CreateObject("bridge.Failures");
};

TEST_F(JavaErrors, AreTheExceptionWithItsCauses) {
  const Error error = Raised("locked");
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_EQ(error.Source(), "Java");
  EXPECT_EQ(error.Description(),
            "java.lang.Exception: The ERP is closed.; caused by java.lang.IllegalStateException: locked; caused by "
            "java.lang.RuntimeException");
  EXPECT_EQ(error.DetailOf("member"), "locked");
  EXPECT_EQ(error.DetailOf("progid"), "bridge.Failures");
  EXPECT_EQ(error.DetailOf("type"), "bridge.Failures");
}

TEST_F(JavaErrors, CarryTheStackTraceAsDetails) {
  EXPECT_THAT(Raised("locked").DetailOf("details"),
              AllOf(StartsWith("java.lang.Exception: The ERP is closed.\n\tat bridge.Failures.locked(Failures.java:"),
                    HasSubstr("\nCaused by: java.lang.IllegalStateException: locked\n")));
}

TEST_F(JavaErrors, OfCallsWithArgumentsAreThoseOfTheMethod) {
  const Error error = test::Raised([&] { failures.Call("with", "nothing"); });
  EXPECT_EQ(error.Description(), "java.lang.UnsupportedOperationException: nothing");
  EXPECT_EQ(Raised("number").Description(), "java.lang.NumberFormatException: a number");
}

TEST_F(JavaErrors, WhoseMessageFailsAreDescribedWithoutIt) {
  EXPECT_EQ(Raised("silent").Description(),
            "bridge.Failures$Silent: (its message cannot be shown: java.lang.IllegalStateException)");
}

TEST_F(JavaErrors, OfAStackThatOverflowsComeInOrder) {
  for (int i = 0; i < 3; ++i) {
    const Error error = Raised("deep");
    EXPECT_EQ(error.Number(), 28);
    EXPECT_THAT(error.Description(), StartsWith("java.lang.StackOverflowError"));
  }
  EXPECT_THAT(failures.Call("getZone").ToText(), "Europe/Berlin");
}

TEST_F(JavaErrors, OfMemoryThatRunsOutComeInOrder) {
  for (int i = 0; i < 3; ++i) {
    const Error error = Raised("memory");
    EXPECT_EQ(error.Number(), 7);
    EXPECT_THAT(error.Description(), StartsWith("java.lang.OutOfMemoryError: Java heap space"));
  }
  EXPECT_THAT(failures.Call("getZone").ToText(), "Europe/Berlin");
}

TEST_F(JavaErrors, OfConstructorsAndInitializersFailTheCreation) {
  const Error constructor = NotCreated("bridge.Failures$OfConstructor");
  EXPECT_THAT(constructor.Description(), HasSubstr("java.lang.IllegalArgumentException: no licence"));
  EXPECT_THAT(constructor.DetailOf("details"), HasSubstr("at bridge.Failures$OfConstructor.<init>"));
  EXPECT_THAT(NotCreated("bridge.Failures$OfInitializer").Description(),
              HasSubstr("java.lang.ExceptionInInitializerError; caused by java.lang.NumberFormatException: For input"));
}

TEST_F(JavaErrors, OfAClassWithoutObjectsSayWhy) {
  EXPECT_THAT(NotCreated("bridge.Failures$WithArgument").Description(),
              HasSubstr("the class bridge.Failures$WithArgument has no public constructor without arguments;"));
  EXPECT_THAT(NotCreated("bridge.Failures$Abstract").Description(), HasSubstr("$Abstract is abstract;"));
  EXPECT_THAT(NotCreated("bridge.Failures$NotPublic").Description(), HasSubstr("$NotPublic is not public;"));
}

TEST_F(JavaErrors, OfAMissingClassNameTheClasspath) {
  EXPECT_THAT(NotCreated("bridge.Missing").Description(),
              HasSubstr("error 429, Java: the class bridge.Missing is not there; the classpath is " JAVA_TEST_CLASSES));
}

TEST_F(JavaErrors, OfAMissingJarMarkIt) {
  Write("a.component", kJavaSettings + "setting classpath = none.jar\nprogid = bridge.Missing\n");
  InstalledComponents fresh{clock, {folder.Path()}};
  EXPECT_THAT(test::Raised([&] { fresh.CreateObject("bridge.Missing"); }).Description(),
              HasSubstr(JAVA_TEST_CLASSES ":" + (folder / "none.jar") + " (missing)"));
}

}  // namespace
}  // namespace qmx::test
