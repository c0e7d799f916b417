// Which errors of which database ask to try again.
#include "platform/retryable.h"

#include <gtest/gtest.h>

namespace qmx::test {
namespace {

bool Asks(const std::string& state, const std::string& code) {
  return AsksToTryAgain(Error(errors::kProviderUnspecified, "ODBC", "It failed.")  //
                            .With("SQLSTATE", state)
                            .With("native code", code));
}

TEST(ADatabase, AsksToTryAgainAfterAConflictOrADeadlock) {
  EXPECT_TRUE(Asks("40001", "1"));     // PostgreSQL, and what speaks its protocol
  EXPECT_TRUE(Asks("40P01", "1"));     // PostgreSQL
  EXPECT_TRUE(Asks("40001", "1213"));  // MariaDB
  EXPECT_TRUE(Asks("HY000", "1213"));
}

TEST(ADatabase, AsksToTryAgainWhereALockWasNotReleasedInTimeOrANodeIsNotReady) {
  EXPECT_TRUE(Asks("HY000", "1205"));
  EXPECT_TRUE(Asks("08S01", "1047"));
}

TEST(ADatabase, DoesNotAskToTryAgainWhatItRefusesOrWhoseOutcomeIsUnknown) {
  for (const char* state : {"23505", "40002", "40003", "57014", "57P01", "08S01", "HYT00", "HY000", "25P02"}) {
    EXPECT_FALSE(Asks(state, "1")) << state;
  }
  for (const char* code : {"0", "1062", "1180", "1969", "2006", "2013", "1927", "12130"}) {
    EXPECT_FALSE(Asks("HY000", code)) << code;
  }
  EXPECT_FALSE(AsksToTryAgain(Error(errors::kTimeout, "SQLite", "database is locked.").With("code", "SQLITE_BUSY")));
}

}  // namespace
}  // namespace qmx::test
