#include "platform/member_names.h"

#include <gtest/gtest.h>

namespace qmx::test {
namespace {

TEST(MemberNames, CountTheirIdsFromZero) {
  MemberNames names;
  EXPECT_EQ(names.Id("getYear"), 0);
  EXPECT_EQ(names.Id("getMonth"), 1);
}

TEST(MemberNames, KeepTheirIds) {
  MemberNames names;
  names.Id("getYear");
  names.Id("getMonth");
  EXPECT_EQ(names.Id("getYear"), 0);
}

TEST(MemberNames, HaveAnIdForEachSpelling) {
  MemberNames names;
  EXPECT_NE(names.Id("getYear"), names.Id("GETYEAR"));
}

TEST(MemberNames, AreFoundByTheirIds) {
  MemberNames names;
  names.Id("getYear");
  names.Id("GETYEAR");
  EXPECT_EQ(names.Find(0)->Name(), "getYear");
  EXPECT_EQ(names.Find(1)->Name(), "GETYEAR");
}

TEST(MemberNames, StayAtTheirAddresses) {
  MemberNames names;
  names.Id("getYear");
  const Member* const member = names.Find(0);
  for (int i = 0; i < 1000; ++i) names.Id("member" + std::to_string(i));
  EXPECT_EQ(names.Find(0), member);
  EXPECT_EQ(member->Name(), "getYear");
}

TEST(MemberNames, AreNullForAnIdThatNoNameHas) {
  MemberNames names;
  names.Id("getYear");
  EXPECT_EQ(names.Find(-1), nullptr);
  EXPECT_EQ(names.Find(1), nullptr);
}

}  // namespace
}  // namespace qmx::test
