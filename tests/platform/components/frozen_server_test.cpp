#include <gtest/gtest.h>

#include "platform/components/installed_components.h"
#include "tests/platform/components/server_folder.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

TEST(AFrozenServer, OfShorterStructsLoadsAndServes) {
  ServerFolder folder;
  folder.Add("frozen", TestServer("frozen"), {"Test.Frozen"});
  FakeClock clock;
  InstalledComponents components{clock, {folder.Path()}};
  const Object object = components.CreateObject("Test.Frozen");
  EXPECT_EQ(object.Call("getAnswer"), Variant(1));
  EXPECT_EQ(object.Call("getAnswer"), Variant(1));
}

TEST(AFrozenServer, IsNotReadBeyondItsStructs) {
  ServerFolder folder;
  folder.Add("frozen", TestServer("frozen"), {"Test.Frozen"});
  FakeClock clock;
  InstalledComponents components{clock, {folder.Path()}};
  const Object object = components.CreateObject("Test.Frozen");
  const Error error = Raised([&] { object.Call("getNothing"); });
  EXPECT_EQ(error.Number(), 438);
  EXPECT_EQ(error.Details(), (std::vector<Error::Detail>{{"member", "getNothing"}, {"progid", "Test.Frozen"}}));
}

}  // namespace
}  // namespace qmx::test
