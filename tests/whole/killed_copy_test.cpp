// A run that is killed: what it leaves, and how the next run makes the table right.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <iterator>
#include <random>
#include <sstream>

#include "tests/whole/copy_process.h"
#include "tests/whole/not_by_change.h"
#include "tests/whole/watched_run.h"

namespace qmx::test::killed_copy {
namespace {

using testing::IsEmpty;

constexpr const char* kTable = "tssoc200";
constexpr int kOrders = 500;
constexpr const char* kLutm = "2001-02-03 04:05:06";
constexpr int kKilled = 128 + SIGKILL;

// The run that is killed finds local orders from an earlier day, all of them interrupted for the reason OLD.
class KilledCopy : public testing::TestWithParam<unsigned> {
 protected:
  KilledCopy() {
    local_.Copy(kTable);
    fresh_ = local_.RowsOf(kTable);
    local_.Sql("update tssoc200 set crit = 'OLD'");
    local_.Sql(std::string("update tstables set lutm = '") + kLutm + "'");
    local_.Sql("create table kept as select * from tssoc200");
    old_ = local_.RowsOf(kTable);
  }

  int CopiedOrders() { return std::stoi(local_.Value("select count(*) from tssoc200 where crit <> 'OLD'")); }
  std::string InUse() { return local_.Value("select in_use from tstables"); }
  std::string Lutm() { return local_.Value("select lutm from tstables"); }

  std::unique_ptr<RunningProcess> StartOnTheOldRows() {
    local_.Sql("delete from tssoc200");
    local_.Sql("insert into tssoc200 select * from kept");
    local_.Sql(std::string("update tstables set in_use = 0, lutm = '") + kLutm + "'");
    return program_.Start(kTable);
  }

  // Kills a run once it has copied so many orders, before it has copied all of them.
  void KillAfter(int orders) {
    const auto run = StoppedWithin([&] { return StartOnTheOldRows(); },  //
                                   [&] { return CopiedOrders() >= orders; },
                                   [&] { return CopiedOrders() >= static_cast<int>(fresh_.size()); });
    run->Signal(SIGKILL);
    EXPECT_EQ(run->Wait().status, kKilled);
  }

  void ExpectFlagAndTimeAsWithinARun() {
    EXPECT_EQ(local_.Value("pragma integrity_check"), "ok");
    EXPECT_EQ(InUse(), "1");
    EXPECT_EQ(Lutm(), kLutm);
  }

  void ExpectRefusalUntilTheFlagIsResetAndThenARightTable() {
    EXPECT_EQ(program_.Run(kTable).status, 3);
    local_.Sql("update tstables set in_use = 0");
    const Process next = program_.Run(kTable);
    EXPECT_EQ(next.status, 0) << next.err;
    EXPECT_EQ(InUse(), "0");
    EXPECT_NE(Lutm(), kLutm);
    Rows rows = local_.RowsOf(kTable);
    if (local_.Value("select syme from tstables") == "2") ExcuseColumnsNotByChange(kTable, rows, fresh_);
    EXPECT_THAT(Differences(kTable, rows, fresh_), IsEmpty());
  }

  // The first orders that the ERP lists, in its order, which is the keys'.
  Rows FirstOrders(std::size_t count) const {
    return Rows(fresh_.begin(), std::next(fresh_.begin(), static_cast<std::ptrdiff_t>(count)));
  }

  std::vector<std::string> KeysInTheOrderOfTheirChanges() const {
    const std::string keys =
        company_.Value("select group_concat(orno, ' ') from (select orno from audit_tssoc200 order by entry)");
    std::istringstream words(keys);
    return {std::istream_iterator<std::string>(words), {}};
  }

  FakeClock clock_{At(20, 14, 5, 9)};
  Company company_{{{"orders", kOrders}}};
  LocalCopy local_{company_, clock_};
  CopyProcesses program_{company_, local_};
  Rows fresh_, old_;
  std::mt19937 dice_{GetParam()};
};

TEST_P(KilledCopy, InFullLeavesTheFirstRowsWholeAndTheTableInProgress) {
  KillAfter(1 + static_cast<int>(dice_() % (kOrders / 3)));
  ExpectFlagAndTimeAsWithinARun();
  const Rows rows = local_.RowsOf(kTable);
  ASSERT_LT(rows.size(), fresh_.size());
  EXPECT_THAT(Differences(kTable, rows, FirstOrders(rows.size())), IsEmpty());
  ExpectRefusalUntilTheFlagIsResetAndThenARightTable();
}

TEST_P(KilledCopy, InFullIsNotMendedByACopyByChange) {
  KillAfter(1 + static_cast<int>(dice_() % (kOrders / 3)));
  const Rows rows = local_.RowsOf(kTable);
  ASSERT_LT(rows.size(), fresh_.size());
  local_.Sql("update tstables set in_use = 0");
  local_.ByChange();
  const Process next = program_.Run(kTable);
  EXPECT_EQ(next.status, 0) << next.err;
  EXPECT_EQ(local_.RowsOf(kTable), rows);
}

TEST_P(KilledCopy, ByChangeLeavesTheFirstChangesAndTheTableInProgress) {
  company_.Change(DateTime::FromDate(2002, 1, 1), "update tssoc200 set crit = 'NEW', ofbp = ofbp || 'x'");
  LocalCopy fresh(company_, clock_);
  fresh.Copy(kTable);
  fresh_ = fresh.RowsOf(kTable);
  local_.ByChange();

  KillAfter(1 + static_cast<int>(dice_() % (kOrders / 3)));
  ExpectFlagAndTimeAsWithinARun();
  const Rows rows = local_.RowsOf(kTable);
  ASSERT_EQ(rows.size(), fresh_.size());
  bool isNew = true;
  for (const std::string& key : KeysInTheOrderOfTheirChanges()) {
    isNew = isNew && rows.at(key).at("crit") != "OLD";
    EXPECT_EQ(rows.at(key), (isNew ? fresh_ : old_).at(key)) << key;
  }
  ExpectRefusalUntilTheFlagIsResetAndThenARightTable();
}

// From its start to its end: before the flag is set and after it is released as well.
TEST_P(KilledCopy, AtAnyMomentLeavesTheOldRowsOrTheFirstNewOnes) {
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(program_.Run(kTable).status, 0);
  const auto whole = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin);
  local_.Sql("delete from tssoc200");
  local_.Sql("insert into tssoc200 (orno, crit) values ('A', 'OLD')");
  local_.Sql(std::string("update tstables set lutm = '") + kLutm + "'");
  const Rows old = local_.RowsOf(kTable);

  {
    const auto run = program_.Start(kTable);
    std::this_thread::sleep_for(whole * (dice_() % 1000) / 1000);
    if (!run->HasEnded()) run->Signal(SIGKILL);
    run->Wait();
  }
  EXPECT_EQ(local_.Value("pragma integrity_check"), "ok");
  const Rows rows = local_.RowsOf(kTable);
  if (rows != old) {
    ASSERT_LE(rows.size(), fresh_.size());
    EXPECT_THAT(Differences(kTable, rows, FirstOrders(rows.size())), IsEmpty());
  }
  const bool isComplete = rows.size() == fresh_.size();
  EXPECT_TRUE(isComplete || Lutm() == kLutm);
  EXPECT_TRUE(isComplete || rows == old || InUse() == "1");
  local_.Sql("update tstables set in_use = 0");
  EXPECT_EQ(program_.Run(kTable).status, 0);
  EXPECT_THAT(Differences(kTable, local_.RowsOf(kTable), fresh_), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Seeds, KilledCopy, testing::Range(1u, 3u));

}  // namespace
}  // namespace qmx::test::killed_copy
