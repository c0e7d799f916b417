// orvan-sandbox work: days that change every table, all of it in the audit trail.
#include "sandbox/tool/work.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "sandbox/tool/make.h"
#include "tests/sandbox/content.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace orvan::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const Moment kToday{2026, 11, 20, 0, 0, 0};

class WorkingDay : public testing::Test {
 protected:
  std::string Made(const char* name = "orvan.db") {
    const std::string path = (folder_.Path() / name).string();
    Sizes sizes;
    sizes.calendarDays = 160;
    sizes.orders = 100;
    sizes.addresses = 40;
    MakeSandbox(path, Plan{1, kToday, sizes}, false);
    return path;
  }

  // Records as texts, by their keys.
  using Records = std::map<std::string, std::string>;
  static Records RecordsOf(const std::string& path, const Table& table) {
    const std::string from = " FROM " + std::string(table.code) + " ORDER BY " + ColumnList(table.key);
    const std::vector<std::string> keys = Query(path, "SELECT " + ColumnList(table.key) + from);
    const std::vector<std::string> rows = Query(path, "SELECT *" + from);
    Records records;
    for (std::size_t row = 0; row < keys.size(); ++row) records[keys[row]] = rows.at(row);
    return records;
  }
  static std::set<std::string> KeysOf(const Records& records) {
    std::set<std::string> keys;
    for (const auto& [key, record] : records) keys.insert(key);
    return keys;
  }

  static std::vector<Changes> Work(const std::string& path, int days = 1, std::uint64_t seed = 1) {
    return orvan::Work({path, seed, days, kToday, Moment{2026, 11, 20, 8, 0, 0}});
  }

  qmx::test::TempFolder folder_;
};

TEST_F(WorkingDay, IsTheSameForTheSameSeed) {
  const std::string first = Made("first.db");
  const std::string second = Made("second.db");
  const std::string third = Made("third.db");
  Work(first, 2, 5);
  Work(second, 2, 5);
  Work(third, 2, 6);
  EXPECT_EQ(Content(first), Content(second));
  EXPECT_NE(Content(first), Content(third));
}

TEST_F(WorkingDay, InsertsUpdatesAndDeletesInEveryTable) {
  const std::string path = Made();
  const std::vector<Changes> changes = Work(path, 6);
  EXPECT_EQ(changes.size(), AllTables().size());
  for (const Changes& table : changes) {
    EXPECT_GT(table.inserted, 0) << table.code;
    EXPECT_GT(table.updated, 0) << table.code;
    EXPECT_GT(table.deleted, 0) << table.code;
  }
}

TEST_F(WorkingDay, DeletesRecordsAndInsertsThemAgain) {
  const std::string path = Made();
  Work(path, 3);
  for (const char* code : {"tsmdm030", "tsmdm135", "tsclm024", "tccom130", "tcccp001", "tssoc200", "tscfg200"}) {
    const Table& table = *FindTable(code);
    const std::string again = "SELECT count(*) > 0 FROM " + AuditTable(table) + " d JOIN " + AuditTable(table) +
                              " i USING (" + ColumnList(table.key) +
                              ") WHERE d.change = 'D' AND i.change = 'I' AND i.entry = d.entry + 1";
    EXPECT_EQ("1", One(path, again)) << code;
  }
}

// The trail, applied to the keys of the file as it was made, gives the keys of the file as it is, and every record that
// differs now has an entry.
TEST_F(WorkingDay, LeavesNoChangeOutOfTheTrail) {
  const std::string before = Made("before.db");
  const std::string after = Made("after.db");
  Work(after, 3);
  for (const Table& table : AllTables()) {
    SCOPED_TRACE(table.code);
    const Records old = RecordsOf(before, table);
    const Records now = RecordsOf(after, table);
    std::set<std::string> replayed = KeysOf(old);
    std::set<std::string> entered;
    for (const std::string& entry :
         Query(after, "SELECT change, " + ColumnList(table.key) + " FROM " + AuditTable(table) + " ORDER BY entry")) {
      const std::string key = entry.substr(2);
      EXPECT_EQ(replayed.contains(key), entry[0] != 'I') << entry;
      if (entry[0] == 'I') replayed.insert(key);
      if (entry[0] == 'D') replayed.erase(key);
      entered.insert(key);
    }
    EXPECT_EQ(replayed, KeysOf(now));
    int changed = 0;
    for (const auto& [key, record] : now) {
      if (!old.contains(key) || old.at(key) == record) continue;
      ++changed;
      EXPECT_THAT(entered, testing::Contains(key));
    }
    EXPECT_GT(changed, 0) << "no record was updated";
  }
}

TEST_F(WorkingDay, HappensWithinWorkingHoursOfThePretendedDays) {
  const std::string path = Made();
  Work(path, 2);
  EXPECT_EQ("2026-11-20|2026-11-21", One(path, "SELECT min(date(at)), max(date(at)) FROM audit_tssoc200"));
  EXPECT_EQ("1|1", One(path, "SELECT min(time(at)) >= '08:00:00', max(time(at)) < '17:00:00' FROM audit_tssoc200"));
  EXPECT_EQ("0", One(path, "SELECT count(*) FROM sandbox_clock")) << "the pretended time ends with the work";
}

TEST_F(WorkingDay, GivesAnEmployeeACalendarThatNobodyHad) {
  const std::string path = Made();
  EXPECT_EQ("0", One(path, "SELECT count(*) FROM tsmdm140 WHERE ccal = 'CAL007'"));
  Work(path);
  EXPECT_EQ("1", One(path, "SELECT count(*) FROM tsmdm140 WHERE ccal = 'CAL007'"));
  EXPECT_NE("0", One(path, "SELECT count(*) FROM tcccp030 WHERE ccal = 'CAL007'"));
}

TEST_F(WorkingDay, TakesOrdersThroughAllTheirStates) {
  const std::string path = Made();
  Work(path, 6);
  const auto some = [&](const std::string& condition) {
    EXPECT_NE("0", One(path, "SELECT count(*) FROM tssoc200 WHERE " + condition)) << condition;
  };
  some("orno LIKE 'SN%' AND osta >= 20 AND pstm IS NOT NULL");             // new ones, planned
  some("osta = 40 AND date(astm) BETWEEN '2026-11-20' AND '2026-11-30'");  // started
  some("osta = 50 AND date(aftm) BETWEEN '2026-11-20' AND '2026-11-30'");  // finished
  some("osta = 70 AND pstm IS NULL AND emno = ''");                        // cancelled
  some("stna LIKE 'Customer %' AND orno LIKE 'SO%'");                      // sold to somebody else
  EXPECT_THAT(Query(path, "SELECT orno FROM tssoc210 WHERE orno NOT IN (SELECT orno FROM tssoc200)"), IsEmpty());
}

TEST_F(WorkingDay, UsesTheMachinesClockByDefault) {
  const std::string path = Made();
  const qmx::test::Process worked = qmx::test::Run(TEST_TOOL, {"work", path}, {{"TZ", "Asia/Kolkata"}});
  EXPECT_EQ(0, worked.status) << worked.err;
  EXPECT_THAT(worked.out, HasSubstr("tssoc200  Service Orders "));
  EXPECT_EQ("1", One(path,
                     "SELECT max(abs(julianday(at) - julianday('now', '+5 hours', '+30 minutes'))) * 86400 < 600 FROM "
                     "audit_tssoc200"));
}

TEST_F(WorkingDay, NeedsAFileThatIsThere) {
  const qmx::test::Process worked = qmx::test::Run(TEST_TOOL, {"work", "/no/such/file.db"});
  EXPECT_EQ(1, worked.status);
  EXPECT_EQ(
      "orvan-sandbox: There is no sandbox file \"/no/such/file.db\". Check the path in the business component, or make "
      "the file with: orvan-sandbox make /no/such/file.db\n",
      worked.err);
}

TEST_F(WorkingDay, NeedsASandboxFile) {
  const std::string path = (folder_.Path() / "other.db").string();
  Database::Create(path)->Execute("CREATE TABLE something (other)");
  const qmx::test::Process worked = qmx::test::Run(TEST_TOOL, {"work", path});
  EXPECT_EQ(1, worked.status);
  EXPECT_THAT(worked.err, HasSubstr("no such table: audit_tsmdm030"));
}

TEST_F(WorkingDay, IsPossibleInATableThatHasNothingLeft) {
  const std::string path = Made();
  {
    const auto database = Database::OpenToWrite(path);
    for (const Table& table : AllTables()) database->Execute("DELETE FROM " + std::string(table.code));
  }
  Work(path, 2);
  EXPECT_NE("0", One(path, "SELECT count(*) FROM tsmdm030"));
}

}  // namespace
}  // namespace orvan::test
