// Which errors mean that a commit was refused, and which leave its outcome unknown.
#include "platform/odbc/answers.h"

#include <gtest/gtest.h>

namespace qmx::test {
namespace {

Error Answer(const std::string& state, int native, const std::string& text = "It failed.") {
  Error error(errors::kProviderUnspecified, "ODBC", text);
  error.With("SQLSTATE", state).With("native code", std::to_string(native));
  return error;
}

TEST(ACommit, IsRefusedIfTheSqlstateSaysSo) {
  for (const char* state : {"23503", "40001", "40P01", "25006", "53100", "57014", "P0001", "42501"}) {
    EXPECT_TRUE(IsRefusal(Answer(state, 1), Refusals::ByState)) << state;
  }
  for (const char* state : {"08S01", "08003", "HY000", "HYT00", "57P01", "40003", "XX000", "58030", "IM001", "01000"}) {
    EXPECT_FALSE(IsRefusal(Answer(state, 1), Refusals::ByState)) << state;
  }
  EXPECT_FALSE(IsRefusal(Error(errors::kProviderUnspecified, "ODBC", "No reason."), Refusals::ByState));
}

TEST(ACommit, IsRefusedIfTheServersErrorCodeSaysSo) {
  for (const int code : {1290, 1213, 1180, 1020, 1792, 1062, 4025}) {
    EXPECT_TRUE(IsRefusal(Answer("HY000", code), Refusals::ByNativeCode)) << code;
  }
  for (const int code : {0, 2006, 2013, 2055, 1053, 1317, 1927}) {
    EXPECT_FALSE(IsRefusal(Answer("HY000", code), Refusals::ByNativeCode)) << code;
  }
  EXPECT_FALSE(IsRefusal(Answer("08S01", 1159), Refusals::ByNativeCode));
}

TEST(ACommit, MayBeDoneByOtherNodesIfItsOwnNodeCouldNotFinishIt) {
  EXPECT_TRUE(IsRefusal(Answer("HY000", 1180), Refusals::ByNativeCode));
  EXPECT_FALSE(IsRefusal(Answer("HY000", 1180), Refusals::ByNativeCodeInACluster));
  EXPECT_TRUE(IsRefusal(Answer("40001", 1213), Refusals::ByNativeCodeInACluster));
  EXPECT_FALSE(IsRefusal(Answer("08S01", 1047), Refusals::ByNativeCodeInACluster));
}

TEST(ACommit, IsAlwaysRefusedWithoutAConnectionToAServer) {
  EXPECT_TRUE(IsRefusal(Answer("HY000", 5), Refusals::Always));
}

TEST(AStatement, IsLostOnlyWithItsConnection) {
  for (const char* state : {"08S01", "08003", "57P01", "40003"})
    EXPECT_TRUE(IsLoss(Answer(state, 1), Refusals::ByState)) << state;
  for (const int code : {2006, 2013, 1927}) EXPECT_TRUE(IsLoss(Answer("HY000", code), Refusals::ByState)) << code;
  EXPECT_TRUE(IsLoss(Answer("HY000", 1, "server closed the connection unexpectedly"), Refusals::ByState));
  EXPECT_FALSE(IsLoss(Answer("08S01", 1047), Refusals::ByState));  // a cluster's node that did not execute it
  EXPECT_TRUE(IsLoss(Error(errors::kProviderUnspecified, "ODBC", "No reason."), Refusals::ByState));
  for (const char* state : {"23505", "40001", "57014", "HYT00", "HY000", "42P01", "22001"}) {
    EXPECT_FALSE(IsLoss(Answer(state, 1), Refusals::ByState)) << state;
  }
}

TEST(AStatement, IsLostInAClusterIfItsNodeCouldNotFinishItsCommit) {
  EXPECT_TRUE(IsLoss(Answer("HY000", 1180), Refusals::ByNativeCodeInACluster));
  EXPECT_FALSE(IsLoss(Answer("HY000", 1180), Refusals::ByNativeCode));
  EXPECT_FALSE(IsLoss(Answer("40001", 1213), Refusals::ByNativeCodeInACluster));
}

}  // namespace
}  // namespace qmx::test
