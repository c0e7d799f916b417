// Each JNI call that may fail, failing once.
#include <dlfcn.h>

#include "tests/bridges/java/java_components.h"

namespace qmx::test {
namespace {

class JavaFaults : public JavaComponents {
 protected:
  JavaFaults() {
    Write("a.component", "setting jvm = " FAILING_JVM "\nsetting classpath = " JAVA_TEST_CLASSES
                         "\nsetting option = -Xcheck:jni\nprogid = bridge.*\nprogid = java:*\n");
  }

  // Something of everything.
  void Scenario() {
    const Object values = components.CreateObject("bridge.Values");
    for (const char* const name : {"getInt", "getLongBox", "getText", "getTrue", "getCharBox", "getDoubleBox",
                                   "getBooleanBox", "getIntBox", "getBigDecimal", "getTimestamp", "getNothing"}) {
      values.Call(std::string_view(name));
    }
    const Object date = components.CreateObject("java:java.util.Date");
    date.Call("setYear", 126);
    ASSERT_EQ(date.Call("getYear"), Variant(126));
    const Object arguments = components.CreateObject("bridge.Arguments");
    ASSERT_EQ(arguments.Call("ofTwo", "a", 2), Variant("a2"));
    ASSERT_EQ(arguments.Call("ofArguments", arguments), Variant("this"));
    ASSERT_EQ(arguments.Call("ofDate", DateTime::FromDate(2026, 1, 1)), Variant("126 0 1 0 0 0"));
    const Object iterable = components.CreateObject("bridge.Members").Call("iterable").ToObject();
    while (iterable.Call("hasMoreElements").ToBoolean()) iterable.Call("nextElement");
  }
};

TEST_F(JavaFaults, AreErrorsAfterWhichEverythingWorks) {
  // Loads the library without starting its JVM, so that the start has faults too.
  void* const library = dlopen(FAILING_JVM, RTLD_NOW);
  ASSERT_TRUE(library) << dlerror();
  const auto fail = reinterpret_cast<void (*)(int)>(dlsym(library, "FailJniCall"));
  const auto hasFailed = reinterpret_cast<bool (*)()>(dlsym(library, "HasJniCallFailed"));

  int number = 1;
  for (int passed = 0; passed == 0; ++number) {
    fail(number);
    try {
      Scenario();
      if (!hasFailed()) ++passed;
    } catch (const Error& error) {
      EXPECT_TRUE(hasFailed()) << number << ": " << error.Description();
      EXPECT_FALSE(error.Description().empty()) << number;
    }
    fail(0);
    ASSERT_LT(number, 2000);
  }
  EXPECT_GT(number, 60);
  Scenario();
}

TEST_F(JavaFaults, AreDescribedAsTheExceptionThatTheyLeave) {
  Scenario();
  void* const library = dlopen(FAILING_JVM, RTLD_NOW);
  const auto fail = reinterpret_cast<void (*)(int)>(dlsym(library, "FailJniCall"));
  const Object values = components.CreateObject("bridge.Values");
  values.Call("getInt");
  fail(1);
  const Error error = Raised([&] { values.Call("getInt"); });
  EXPECT_EQ(error.Description(), "java.lang.IllegalStateException: injected");
  EXPECT_EQ(values.Call("getInt"), Variant(INT32_MIN));
}

}  // namespace
}  // namespace qmx::test
