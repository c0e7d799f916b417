// References to Java's objects do not pile up, whatever is called and however it ends.
#include "tests/bridges/java/failing_jvm.h"

namespace qmx::test {
namespace {

class JavaReferences : public FailingJvm {
 protected:
  // How many references more there are after the same was done again and again.
  template <typename Work>
  void ExpectNoGrowth(Work&& work) {
    work();  // classes and members are kept from here on
    const long globals = Globals();
    for (int i = 0; i < 200; ++i) work();
    EXPECT_EQ(Globals(), globals);
    EXPECT_EQ(Locals(), 0);
  }
};

TEST_F(JavaReferences, DoNotPileUpOverObjectsValuesAndEnumerations) {
  ExpectNoGrowth([&] { Scenario(); });
}

TEST_F(JavaReferences, DoNotPileUpOverEnumerationsThatAreLeftInTheMiddle) {
  const Object members = components.CreateObject("bridge.Members");
  ExpectNoGrowth([&] {
    for (const char* const name : {"enumeration", "iterator", "iterable", "stream"}) {
      members.Call(std::string_view(name)).ToObject().Call("nextElement");
    }
  });
}

TEST_F(JavaReferences, DoNotPileUpOverErrors) {
  const Object failures = components.CreateObject("bridge.Failures");
  const Object arguments = components.CreateObject("bridge.Arguments");
  const Object values = components.CreateObject("bridge.Values");
  ExpectNoGrowth([&] {
    for (const char* const name : {"locked", "number", "silent", "notThere"}) {
      Raised([&] { failures.Call(std::string_view(name)); });
    }
    for (const char* const name : {"getArray", "getMap", "getNul", "getInexactLongBox"}) {
      Raised([&] { values.Call(std::string_view(name)); });
    }
    Raised([&] { arguments.Call("ofInt", "a"); });
    Raised([&] { arguments.Call("clash", 1, 2); });
    Raised([&] { components.CreateObject("bridge.Failures$OfConstructor"); });
    Raised([&] { components.CreateObject("bridge.Missing"); });
  });
}

// A place in an array of Java serves a date that is read and released.
TEST_F(JavaReferences, OfDatesAreNoneUntilTheProgramUsesThemOtherwise) {
  const Object dates = components.CreateObject("bridge.Dates");
  dates.Call("isDate", dates.Call("getDate"));  // the members are kept from here on
  dates.Call("getDate").ToObject().Call("getYear");
  const long none = Globals();
  std::vector<Object> held;
  for (int i = 0; i < 100; ++i) {
    held.push_back(dates.Call("getDate").ToObject());
    ASSERT_EQ(held.back().Call("getYear"), Variant(70));
  }
  EXPECT_EQ(Globals(), none);
  for (const Object& date : held) ASSERT_EQ(dates.Call("isDate", date), Variant(true));
  EXPECT_EQ(Globals(), none + 100);
  held.clear();
  EXPECT_EQ(Globals(), none);
}

TEST_F(JavaReferences, OfRecordsAreAsManyAsThoseThatTheProgramHolds) {
  const Object members = components.CreateObject("bridge.Members");
  members.Call("getBig");  // its class is kept from here on
  const long none = Globals();
  std::vector<Object> held;
  for (int i = 0; i < 1000; ++i) held.push_back(members.Call("getBig").ToObject());
  EXPECT_EQ(Globals() - none, 1000);
  held.clear();
  EXPECT_EQ(Globals() - none, 0);
}

}  // namespace
}  // namespace qmx::test
