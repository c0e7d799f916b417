#include "tests/support/faulty_components.h"

#include <gtest/gtest.h>

#include "tests/support/raised.h"
#include "tests/support/scripted_components.h"

namespace qmx::test {
namespace {

class AFaultyComponent : public testing::Test {
 protected:
  AFaultyComponent() { erp.Lists("A.Manager", {{{"getCode", "a"}}}); }

  std::string FirstCode() {
    const Object manager = components.CreateObject("A.Manager");
    return manager.Call("List").ToObject().Call("nextElement").ToObject().Call("getCode").ToText();
  }

  CallLog log;
  ScriptedErp erp{log};
  FaultyComponents components{erp};
};

TEST_F(AFaultyComponent, CountsItsOperationsIfNoneIsToFail) {
  EXPECT_EQ(FirstCode(), "a");
  EXPECT_EQ(components.Record(),
            (std::vector<std::string>{"create A.Manager", "call List", "call nextElement", "call getCode"}));
  EXPECT_FALSE(components.HasFailed());
}

TEST_F(AFaultyComponent, FailsAtEachOfItsOperationsWithoutCarryingItOut) {
  components.FailWith(Error(5, "Orvan", "Gone."));
  for (int n = 1; n <= 4; ++n) {
    components.Restart();
    components.FailAt(n);
    log.Clear();
    const Error error = Raised([&] { FirstCode(); });
    EXPECT_EQ(error.Number(), 5);
    EXPECT_EQ(error.Description(), "Gone.");
    EXPECT_EQ(log.Lines().size(), static_cast<std::size_t>(n - 1));
    EXPECT_TRUE(components.HasFailed());
  }
  components.Restart();
  components.FailAt(5);
  EXPECT_EQ(FirstCode(), "a");
}

TEST_F(AFaultyComponent, FailsAtEveryCallFromAGivenOneOn) {
  components.FailFrom(2);
  const Object manager = components.CreateObject("A.Manager");
  EXPECT_EQ(Raised([&] { manager.Call("List"); }).Number(), 51);
  EXPECT_EQ(Raised([&] { manager.Call("Close"); }).Number(), 51);
  EXPECT_EQ(Raised([&] { components.CreateObject("A.Manager"); }).Number(), 51);
}

TEST_F(AFaultyComponent, ReachesTheCalleeAsItself) {
  erp.Serves("A.Taker", [&] {
    const auto taker = erp.Make("taker");
    taker->Takes("take", 1);
    return Object(taker);
  });
  const Object manager = components.CreateObject("A.Manager");
  components.CreateObject("A.Taker").Call("take", manager);
  EXPECT_EQ(log.Lines().back(), "taker.take(manager)");
}

}  // namespace
}  // namespace qmx::test
