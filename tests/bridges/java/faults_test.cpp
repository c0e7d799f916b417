// Each JNI call that may fail, failing once.
#include "tests/bridges/java/failing_jvm.h"

namespace qmx::test {
namespace {

class JavaFaults : public FailingJvm {
 protected:
  // Returns how many calls the scenario has.
  int FailEachCall(Failure failure) {
    int number = 1;
    for (;; ++number) {
      Fail(number, failure);
      try {
        Scenario();
        if (!HasFailed()) break;
      } catch (const Error& error) {
        EXPECT_TRUE(HasFailed()) << number << ": " << error.Description();
        EXPECT_FALSE(error.Description().empty()) << number;
      }
      Fail(0);
      EXPECT_EQ(Locals(), 0) << number;
      if (number > 2000) ADD_FAILURE() << "the scenario has no end";
      if (number > 2000) break;
    }
    Fail(0);
    return number - 1;
  }
};

TEST_F(JavaFaults, AreErrorsAfterWhichEverythingWorks) {
  EXPECT_GT(FailEachCall(Failure::Exception), 100);
  Scenario();
}

TEST_F(JavaFaults, WithoutAnExceptionAreErrorsAfterWhichEverythingWorks) {
  EXPECT_GT(FailEachCall(Failure::EmptyResult), 15);
  Scenario();
}

TEST_F(JavaFaults, LeaveNoReferencesBehind) {
  Scenario();
  const long globals = Globals();
  for (const Failure failure : {Failure::Exception, Failure::EmptyResult}) {
    FailEachCall(failure);
    EXPECT_EQ(Globals(), globals);
  }
}

TEST_F(JavaFaults, AreDescribedAsTheExceptionThatTheyLeave) {
  Scenario();
  const Object values = components.CreateObject("bridge.Values");
  values.Call("getInt");
  Fail(1);
  const Error error = Raised([&] { values.Call("getInt"); });
  EXPECT_EQ(error.Description(), "java.lang.IllegalStateException: injected");
  EXPECT_EQ(values.Call("getInt"), Variant(INT32_MIN));
}

// Standard error belongs to the process that ends.
class JavaFaultsDeathTest : public FailingJvm {
 protected:
  void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
  void TearDown() override {}
};

TEST_F(JavaFaultsDeathTest, OfTheJvmsEndLetTheProcessEnd) {
  for (const int call : {1, 2}) {
    const auto end = [&] {
      Scenario();
      Fail(call);
      std::exit(HasFailed() ? 4 : 3);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(3), "");
  }
}

}  // namespace
}  // namespace qmx::test
