// Components whose JVM fails when a test asks for it, and counts the references that the bridge holds
// (failing_jvm.cpp).
#pragma once

#include <dlfcn.h>

#include "tests/bridges/java/java_components.h"

namespace qmx::test {

class FailingJvm : public JavaComponents {
 protected:
  FailingJvm() {
    Write("a.component", std::string(kCheckJni) + "setting jvm = " FAILING_JVM
                                                  "\nsetting classpath = " JAVA_TEST_CLASSES
                                                  "\nprogid = bridge.*\nprogid = java:*\n");
  }

  enum class Failure { Exception, EmptyResult };
  // The call of that number from now on; 0 is none.
  static void Fail(int number, Failure failure = Failure::Exception) {
    Function<void (*)(int, bool)>("FailJniCall")(number, failure == Failure::EmptyResult);
  }
  static bool HasFailed() { return Function<bool (*)()>("HasJniCallFailed")(); }
  static long Locals() { return Function<long (*)()>("LocalReferences")(); }
  static long Globals() { return Function<long (*)()>("GlobalReferences")(); }

  // Something of everything.
  void Scenario() {
    const Object values = components.CreateObject("bridge.Values");
    for (const char* const name :
         {"getInt", "getShort", "getByte", "getFloat", "getDouble", "getChar", "getExactLong", "getLongBox", "getText",
          "getTrue", "getCharBox", "getDoubleBox", "getBooleanBox", "getIntBox", "getBigDecimal", "getTimestamp",
          "getNothing", "getNullText", "getNullDate"}) {
      values.Call(std::string_view(name));
    }
    const Object date = components.CreateObject("java:java.util.Date");
    date.Call("setYear", 126);
    ASSERT_EQ(date.Call("getYear"), Variant(126));
    const Object dates = components.CreateObject("bridge.Dates");
    const Object given = dates.Call("getDate").ToObject();
    ASSERT_EQ(given.Call("getYear"), Variant(70));
    ASSERT_EQ(dates.Call("isDate", given), Variant(true));
    ASSERT_EQ(dates.Call("getTimestampAsDate").GetKind(), Variant::Kind::DateTime);
    const Object arguments = components.CreateObject("bridge.Arguments");
    ASSERT_EQ(arguments.Call("ofTwo", "a", 2), Variant("a2"));
    ASSERT_EQ(arguments.Call("ofArguments", arguments), Variant("this"));
    ASSERT_EQ(arguments.Call("ofDate", DateTime::FromDate(2026, 1, 1)), Variant("126 0 1 0 0 0"));
    const Object members = components.CreateObject("bridge.Members");
    for (const char* const name : {"enumeration", "iterable", "stream"}) {
      const Object several = members.Call(std::string_view(name)).ToObject();
      while (several.Call("hasMoreElements").ToBoolean()) several.Call("nextElement");
    }
  }

 private:
  // The library may be loaded before its JVM is started, so that the start has faults too.
  template <typename Pointer>
  static Pointer Function(const char* name) {
    void* const library = dlopen(FAILING_JVM, RTLD_NOW);
    EXPECT_TRUE(library) << dlerror();
    return reinterpret_cast<Pointer>(dlsym(library, name));
  }
};

}  // namespace qmx::test
