// Every operation of the database fails once, wherever in the expansion it stands.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/batches/driver.h"
#include "tests/calendar/calendar_database.h"
#include "tests/support/faulty_driver.h"

namespace qmx::test {
namespace {

const std::vector<std::string> kDay = {"2001-03-05 08:00:00 > 2001-03-05 17:00:00",
                                       "2001-03-06 08:00:00 > 2001-03-06 17:00:00",
                                       "2001-06-20 08:00:00 > 2001-06-20 17:00:00"};
const std::vector<std::string> kNight = {"2001-03-05 22:00:00 > 2001-03-06"};

struct Faulty {
  SqliteDriver sqlite;
  FaultyDriver driver{sqlite};
  BatchingDriver batching{driver};
  CalendarDatabase local;

  explicit Faulty(bool inGroups = false) : local(inGroups ? static_cast<Driver*>(&batching) : &driver) {
    local.Employee("1001", "DAY");
    local.Employee("1002", "NIGHT");
    local.Records("DAY", {{"2001-03-05", "2001-03-06", 800, 1700}, {"2001-06-20", "2001-06-20", 800, 1700}});
    local.Record("NIGHT", {"2001-03-05", "2001-03-05", 2200, 2400});
    local.Execute("INSERT INTO tscalender VALUES ('DAY', '1999-01-01', '1999-01-02')");
    driver.Restart();
  }

  // Whether it ended without an error.
  bool Expand() {
    try {
      local.Calender().Startprocess();
      return true;
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), errors::kProviderUnspecified) << DescribeChain(error);
      return false;
    }
  }

  void Recover() {
    driver.FailAt(0);
    if (local.recordset().State() != kStateClosed) local.recordset().Close();
  }
};

std::int64_t Operations() {
  Faulty faulty;
  EXPECT_TRUE(faulty.Expand());
  const std::int64_t operations = faulty.driver.Operations();
  EXPECT_EQ(faulty.local.Intervals("DAY"), kDay);
  EXPECT_EQ(faulty.local.Intervals("NIGHT"), kNight);
  return operations;
}

void ExpectNothingButTheseIn(const std::vector<std::string>& found, std::vector<std::string> allowed) {
  allowed.push_back("1999-01-01 > 1999-01-02");
  for (const std::string& interval : found) EXPECT_THAT(allowed, ::testing::Contains(interval));
  EXPECT_LE(found.size(), allowed.size());
}

TEST(ExpansionFaults, RowsThatCannotBeCommittedAreLostAsThoseThatCannotBeInserted) {
  Faulty faulty(true);
  bool isFull = false;
  faulty.driver.before = [&](const std::string& operation) {
    isFull = isFull || operation == "Commit";
    const bool writes = operation == "Commit" || operation.starts_with("Prepare insert into tscalender");
    if (isFull && writes) throw Error(errors::kDiskFull, "Test", "No space is left.");
  };
  EXPECT_TRUE(faulty.Expand());
  EXPECT_TRUE(isFull);
  EXPECT_THAT(faulty.local.Intervals("DAY"), ::testing::IsEmpty());
  EXPECT_THAT(faulty.local.Intervals("NIGHT"), ::testing::IsEmpty());

  faulty.driver.before = nullptr;
  EXPECT_TRUE(faulty.Expand());
  EXPECT_EQ(faulty.local.Intervals("DAY"), kDay);
  EXPECT_EQ(faulty.local.Intervals("NIGHT"), kNight);
}

TEST(ExpansionFaults, OneFailureAnywhereLeavesNoWrongRowAndTheNextExpansionMendsIt) {
  const std::int64_t operations = Operations();
  ASSERT_GT(operations, 30);
  int ended = 0;
  for (std::int64_t failing = 1; failing <= operations; ++failing) {
    SCOPED_TRACE(failing);
    Faulty faulty;
    faulty.driver.FailAt(failing);
    const bool quiet = faulty.Expand();
    EXPECT_TRUE(faulty.driver.HasFailed());
    if (quiet) {
      EXPECT_EQ(faulty.local.recordset().State(), kStateClosed);
    } else {
      ++ended;
    }
    faulty.Recover();
    ExpectNothingButTheseIn(faulty.local.Intervals("DAY"), kDay);
    ExpectNothingButTheseIn(faulty.local.Intervals("NIGHT"), kNight);

    EXPECT_TRUE(faulty.Expand());
    EXPECT_EQ(faulty.local.Intervals("DAY"), kDay);
    EXPECT_EQ(faulty.local.Intervals("NIGHT"), kNight);
  }
  EXPECT_LT(ended, operations / 2) << "most failures are passed over";
}

TEST(ExpansionFaults, ADatabaseThatIsGoneEndsTheExpansionAndNothingElse) {
  const std::int64_t operations = Operations();
  for (std::int64_t failing = 1; failing <= operations; failing += 3) {
    SCOPED_TRACE(failing);
    Faulty faulty;
    faulty.driver.FailFrom(failing);
    faulty.Expand();
    faulty.Recover();
    ExpectNothingButTheseIn(faulty.local.Intervals("DAY"), kDay);
    ExpectNothingButTheseIn(faulty.local.Intervals("NIGHT"), kNight);
  }
}

}  // namespace
}  // namespace qmx::test
