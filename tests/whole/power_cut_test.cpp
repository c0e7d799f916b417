// A power cut while the local database is an SQLite file: its log lacks the end that had not reached the disk yet.
//
// SQLite writes the log from its beginning to its end and has it on the disk before it moves anything of it into the
// database itself. So the log of a whole run, cut off anywhere, plays every power cut within that run.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <set>
#include <sstream>

#include "platform/sqlite/driver.h"
#include "tests/whole/local_copy.h"
#include "tests/whole/not_by_change.h"

namespace qmx::test::power_cut {
namespace {

using testing::IsEmpty;

constexpr const char* kTable = "tssoc200";
constexpr int kOrders = 40;
constexpr const char* kLutm = "2001-02-03 04:05:06";
constexpr std::size_t kMovedIntoTheDatabase = 1000 * 4096;  // a log of that length

class PowerCut : public testing::Test {
 protected:
  PowerCut() {
    local_.Copy(kTable);
    local_.Sql("update tssoc200 set crit = 'OLD'");
    local_.Sql(std::string("update tstables set lutm = '") + kLutm + "'");
    old_ = local_.RowsOf(kTable);
  }

  // One run, of which everything is still in the log.
  void Copy() {
    const auto keepsTheLog = SqliteDriver().Open(qmx::ConnectionText(local_.ConnectionText()));
    keepsTheLog->Prepare("select count(*) from tstables")->Step();
    database_ = ReadFile(local_.File());
    local_.Copy(kTable);
    new_ = local_.RowsOf(kTable);
    log_ = ReadFile(local_.File() + "-wal");
    ASSERT_LT(log_.size(), kMovedIntoTheDatabase);
    ASSERT_EQ(ReadFile(local_.File()), database_);
    keepsTheLog->Close();
  }

  void CutAfter(std::size_t bytes) {
    std::filesystem::remove(local_.File() + "-shm");
    WriteFile(local_.File(), database_);
    WriteFile(local_.File() + "-wal", log_.substr(0, bytes));
  }

  // At many lengths of the log, from nothing to all of it, hardly ever a whole number of its pages.
  template <typename Check>
  void ManyCuts(Check&& check) {
    constexpr std::size_t kCuts = 30;
    for (std::size_t cut = 0; cut <= kCuts; ++cut) {
      const std::size_t bytes = log_.size() * cut / kCuts;
      SCOPED_TRACE(bytes);
      CutAfter(bytes);
      ASSERT_EQ(local_.Value("pragma integrity_check"), "ok");
      const Rows rows = local_.RowsOf(kTable);
      const std::string lutm = local_.Value("select lutm from tstables");
      if (lutm != kLutm) {
        EXPECT_THAT(Differences(kTable, rows, new_), IsEmpty()) << "lutm is ahead of the rows";
      }
      check(rows);
    }
  }

  void ExpectARightTableAfterTheNextRun() {
    CutAfter(log_.size() / 2);
    EXPECT_EQ(local_.Value("select in_use from tstables"), "1");
    EXPECT_EQ(local_.Value("select lutm from tstables"), kLutm);
    local_.Sql("update tstables set in_use = 0");
    local_.Copy(kTable);
    Rows rows = local_.RowsOf(kTable);
    if (local_.Value("select syme from tstables") == "2") ExcuseColumnsNotByChange(kTable, rows, new_);
    EXPECT_THAT(Differences(kTable, rows, new_), IsEmpty());
  }

  FakeClock clock_{At(20, 14, 5, 9)};
  Company company_{{{"orders", kOrders}}};
  LocalCopy local_{company_, clock_};
  Rows old_, new_;

 private:
  std::string database_, log_;
};

TEST_F(PowerCut, InAFullCopyLeavesTheOldRowsOrTheFirstNewOnes) {
  Copy();
  std::size_t most = 0;
  ManyCuts([&](const Rows& rows) {
    if (rows == old_) return;
    const Rows first(new_.begin(), std::next(new_.begin(), static_cast<std::ptrdiff_t>(rows.size())));
    EXPECT_THAT(Differences(kTable, rows, first), IsEmpty());
    EXPECT_GE(rows.size(), most);
    most = rows.size();
  });
  EXPECT_EQ(most, new_.size());
  ExpectARightTableAfterTheNextRun();
}

TEST_F(PowerCut, InWholeModeLeavesTheOldRowsOrTheNewOnes) {
  local_.InOneTransaction();
  Copy();
  bool sawNew = false;
  ManyCuts([&](const Rows& rows) {
    EXPECT_TRUE(rows == old_ || rows == new_) << rows.size() << " rows";
    EXPECT_EQ(rows == new_, local_.Value("select lutm from tstables") != kLutm);
    sawNew = sawNew || rows == new_;
  });
  EXPECT_TRUE(sawNew);
  ExpectARightTableAfterTheNextRun();
}

TEST_F(PowerCut, InACopyByChangeLeavesTheFirstChangesInTheOrderOfTheAuditTrail) {
  company_.Change(DateTime::FromDate(2002, 1, 1),
                  "update tssoc200 set crit = 'NEW', ofbp = ofbp || 'x' where orno like '%2'; "
                  "update tssoc200 set crit = 'NEW', ofbp = ofbp || 'x' where orno not like '%2'");
  std::istringstream words(
      company_.Value("select group_concat(orno, ' ') from (select orno from audit_tssoc200 order by entry)"));
  const std::vector<std::string> changes{std::istream_iterator<std::string>(words), {}};
  ASSERT_EQ(changes.size(), old_.size());
  local_.ByChange();
  Copy();
  std::set<std::size_t> found;  // numbers of changes
  ManyCuts([&](const Rows& rows) {
    ASSERT_EQ(rows.size(), old_.size());
    const auto isOld = [&](const std::string& key) { return rows.at(key) == old_.at(key); };
    const auto firstOld = std::find_if(changes.begin(), changes.end(), isOld);
    for (auto key = changes.begin(); key != changes.end(); ++key) {
      EXPECT_EQ(rows.at(*key), (key < firstOld ? new_ : old_).at(*key)) << *key;
    }
    found.insert(static_cast<std::size_t>(firstOld - changes.begin()));
  });
  EXPECT_EQ(*found.begin(), 0U);
  EXPECT_EQ(*found.rbegin(), changes.size());
  EXPECT_GT(found.size(), 2U) << "no cut was within the changes";
  ExpectARightTableAfterTheNextRun();
}

}  // namespace
}  // namespace qmx::test::power_cut
