// What others see of a copy on each system: the run is stopped again and again, and the tables are read in between.
#include <csignal>
#include <iterator>
#include <map>
#include <sstream>

#include "tests/support/systems_under_test.h"
#include "tests/whole/server_copy.h"
#include "tests/whole/watched_run.h"

namespace qmx::test::seen_copies {
namespace {

using testing::AnyOf;
using testing::Eq;
using testing::IsEmpty;

using Texts = std::vector<std::string>;

class SeenCopy : public CopyIntoAServer {
 protected:
  using CopyIntoAServer::CopyIntoAServer;

  void ExpectSuccess(const std::string& table) {
    const Process run = program_.Run(table);
    EXPECT_EQ(run.status, 0) << run.err;
  }

  // A look takes time, on servers most of all, so there is none before the copy begins.
  void WatchWhileInProgress(RunningProcess& run, const std::function<void()>& look) {
    Watch(run, [&] {
      if (Value("select max(in_use) from tstables") == "1") look();
    });
  }

  CopyProcesses program_ = Program();
};

class SeenCopyOfOrders : public SeenCopy {
 protected:
  SeenCopyOfOrders() : SeenCopy({{"orders", 300}}) {
    ControlRecord(kTable, kFullCopy);
    ExpectSuccess(kTable);
  }
  static constexpr const char* kTable = "tssoc200";

  // All orders are of another day.
  void BeginAnew() {
    Sql("update tssoc200 set crit = 'OLD'");
    Sql(std::string("update tstables set in_use = 0, lutm = '") + kLutm + "'");
  }
};
INSTANTIATE_TEST_SUITE_P(Over, SeenCopyOfOrders, testing::ValuesIn(SystemsUnderTest()), ServerName);

TEST_P(SeenCopyOfOrders, InFullShowsTheOldRowsThenNoneThenMoreAndMoreOfTheListing) {
  const Texts all = RowTexts(kTable);
  bool isPartSeen = false;
  // On a busy machine a copy may be over before it is looked at within its work.
  for (int attempt = 0; attempt < 20 && !isPartSeen; ++attempt) {
    BeginAnew();
    const Texts old = RowTexts(kTable);
    ASSERT_NE(old, all);
    bool isOld = true;
    std::size_t most = 0;
    const auto run = program_.Start(kTable);
    WatchWhileInProgress(*run, [&] {
      const Texts rows = RowTexts(kTable);
      if (isOld && rows == old) return;
      isOld = false;
      EXPECT_TRUE(IsABeginning(rows, all)) << rows.size() << " rows";
      EXPECT_GE(rows.size(), most);
      most = rows.size();
      isPartSeen |= most > 0 && most < all.size();
      EXPECT_TRUE(most == all.size() || Lutm() == kLutm);
    });
    EXPECT_EQ(run->Wait().status, 0);
    EXPECT_EQ(RowTexts(kTable), all);
    if (HasFailure()) return;
  }
  EXPECT_TRUE(isPartSeen);
}

TEST_P(SeenCopyOfOrders, ByChangeShowsTheChangesOneAfterTheOtherInTheirOrder) {
  company_.Change(DateTime::FromDate(2002, 1, 1),
                  "update tssoc200 set crit = 'NEW' where orno like '%2'; delete from tssoc200 where orno like '%3'; "
                  "update tssoc200 set crit = 'NEW' where orno not like '%2'");
  std::istringstream words(
      company_.Value("select group_concat(orno, ' ') from (select orno from audit_tssoc200 order by entry)"));
  const Texts changes{std::istream_iterator<std::string>(words), {}};
  ASSERT_EQ(changes.size(), 300u);
  const auto byKey = [](const Texts& rows) {
    std::map<std::string, std::string> found;
    for (const std::string& row : rows) found[row.substr(0, row.find('|'))] = row;
    return found;
  };
  // The local table has orders that the changes update and delete. The others are inserted.
  const auto beginAnew = [&] {
    Sql("delete from tstables");
    ControlRecord(kTable, kOnlyChanged);
    Sql("delete from tssoc200");
    Sql("insert into tssoc200 (orno, crit) values ('A', 'OLD')");
    for (const std::string& order : changes) {
      if (order.ends_with('3') || order.ends_with('5'))
        Sql("insert into tssoc200 (orno, crit) values ('" + order + "', 'OLD')");
    }
  };
  beginAnew();
  ExpectSuccess(kTable);
  const std::map<std::string, std::string> changed = byKey(RowTexts(kTable));
  EXPECT_EQ(changed.size(), 271u);
  bool isPartSeen = false;
  for (int attempt = 0; attempt < 20 && !isPartSeen; ++attempt) {
    beginAnew();
    auto expected = byKey(RowTexts(kTable));
    auto next = changes.begin();
    const auto run = program_.Start(kTable);
    WatchWhileInProgress(*run, [&] {
      const auto rows = byKey(RowTexts(kTable));
      for (; rows != expected && next != changes.end(); ++next) {
        expected.erase(*next);
        if (changed.contains(*next)) expected[*next] = changed.at(*next);
      }
      EXPECT_EQ(rows, expected) << "these are not the first changes";
      isPartSeen |= next != changes.begin() && next != changes.end();
    });
    EXPECT_EQ(run->Wait().status, 0);
    EXPECT_EQ(byKey(RowTexts(kTable)), changed);
    if (HasFailure()) return;
  }
  EXPECT_TRUE(isPartSeen);
}

TEST_P(SeenCopyOfOrders, DoesNotWaitForAReaderWhoseTransactionStaysOpen) {
  const Texts all = RowTexts(kTable);
  BeginAnew();
  Connection reader({&database_.Base().PlainDriver()}, nullptr);
  reader.Open(ConnectionText(), "", "");
  reader.Execute(GetParam().name == "PostgreSQL" ? "begin isolation level repeatable read"
                 : GetParam().name == "MariaDB"  ? "start transaction with consistent snapshot"
                                                 : "begin");
  const auto old = [&] {
    Recordset rows(nullptr);
    rows.Open("select count(*) from tssoc200 where crit = 'OLD'", reader, kCursorKeyset, kLockOptimistic, kCommandText);
    return rows.Fields(std::size_t{0}).Value().ToInt32();
  };
  EXPECT_EQ(old(), 300);
  ExpectSuccess(kTable);
  EXPECT_EQ(RowTexts(kTable), all);
  EXPECT_EQ(old(), 300) << "the reader's transaction does not see the copy";
  reader.Execute("commit");
  EXPECT_EQ(old(), 0);
}

// A calendar on request, among others.
class SeenCopyOfACalendar : public SeenCopy {
 protected:
  SeenCopyOfACalendar() : SeenCopy({{"calendar-days", 900}}) {
    // Far from the days that are too old to be copied, whenever this test runs.
    company_.Change(DateTime::FromDate(2002, 1, 1),
                    "update tcccp030 set stdt = date(stdt, '+8 years'), endt = date(endt, '+8 years')");
    ExpectSuccess("tsmdm140");
    ExpectSuccess("tcccp030");
    calendar_ = Value("select min(ccal) from tcccp030");
    ExpectSuccess(Request());
    all_ = RowTexts("tcccp030", Its());
    EXPECT_GT(all_.size(), 100u);
    BeginAnew();
    old_ = RowTexts("tcccp030", Its());
    others_ = RowTexts("tcccp030", "not " + Its());
    EXPECT_FALSE(others_.empty());
  }

  std::string Its() const { return "ccal = '" + calendar_ + "'"; }
  std::string Request() const { return "tcccp030=" + calendar_ + "=C"; }
  std::string Control(const char* column) {
    return Value(std::string("select ") + column + " from tstables where tablename = 'tcccp030'");
  }

  void WatchItsCopy(RunningProcess& run, const std::function<void()>& look) {
    WatchWhileInProgress(run, [&] {
      EXPECT_EQ(Control("lutm"), kLutm);
      EXPECT_EQ(Value("select count(*) from tcccp030 where cutm = -1 and not " + Its()),
                std::to_string(others_.size()));
      look();
    });
  }
  void ExpectItsNewRecordsAndTheOldOnesOfOthers(RunningProcess& run) {
    EXPECT_EQ(run.Wait().status, 0);
    EXPECT_EQ(RowTexts("tcccp030", Its()), all_);
    EXPECT_EQ(RowTexts("tcccp030", "not " + Its()), others_);
  }

  // All calendars are of another day. What is no longer the ERP's is deleted by a copy.
  void BeginAnew() {
    Sql("delete from tcccp030 where " + Its());
    Sql("update tcccp030 set cutm = -1");
    for (const char* day : {"1999-01-01", "1999-01-02"}) {
      Sql("insert into tcccp030 (ccal, ract, stdt, sttm, endt, entm) values ('" + calendar_ + "', 'WRK', '" + day +
          "', 800, '" + day + "', 1700)");
    }
    Sql(std::string("update tstables set in_use = 0, lutm = '") + kLutm + "' where tablename = 'tcccp030'");
  }

  std::string calendar_;
  Texts all_, old_, others_;
};
INSTANTIATE_TEST_SUITE_P(Over, SeenCopyOfACalendar, testing::ValuesIn(SystemsUnderTest()), ServerName);

TEST_P(SeenCopyOfACalendar, ShowsItsOldRecordsThenNoneThenMoreAndMoreAndLeavesOtherCalendarsAlone) {
  bool isPartSeen = false;
  for (int attempt = 0; attempt < 20 && !isPartSeen; ++attempt) {
    BeginAnew();
    bool isOld = true;
    std::size_t most = 0;
    const auto run = program_.Start(Request());
    WatchItsCopy(*run, [&] {
      const Texts rows = RowTexts("tcccp030", Its());
      if (isOld && rows == old_) return;
      isOld = false;
      EXPECT_TRUE(IsABeginning(rows, all_)) << rows.size() << " records";
      EXPECT_GE(rows.size(), most);
      most = rows.size();
      isPartSeen |= most > 0 && most < all_.size();
    });
    ExpectItsNewRecordsAndTheOldOnesOfOthers(*run);
    if (HasFailure()) return;
  }
  EXPECT_TRUE(isPartSeen);
}

TEST_P(SeenCopyOfACalendar, ThatIsKilledLeavesItsFirstRecordsAndTheNextRunMakesItRight) {
  const auto copied = [&] { return RowTexts("tcccp030", Its() + " and stdt > '2000-01-01'").size(); };
  const auto start = [&] {
    BeginAnew();
    return program_.Start(Request());
  };
  const auto run = StoppedWithin(
      start, [&] { return copied() > 0; }, [&] { return copied() == all_.size(); });
  run->Signal(SIGKILL);
  EXPECT_EQ(run->Wait().status, 128 + SIGKILL);

  const Texts left = RowTexts("tcccp030", Its());
  EXPECT_THAT(left, testing::Not(IsEmpty()));
  EXPECT_TRUE(IsABeginning(left, all_));
  EXPECT_EQ(RowTexts("tcccp030", "not " + Its()), others_);
  EXPECT_EQ(Control("in_use"), "1");
  EXPECT_EQ(Control("lutm"), kLutm);

  EXPECT_EQ(program_.Run(Request()).status, 3);
  Sql("update tstables set in_use = 0 where tablename = 'tcccp030'");
  ExpectSuccess(Request());
  EXPECT_EQ(RowTexts("tcccp030", Its()), all_);
  EXPECT_EQ(RowTexts("tcccp030", "not " + Its()), others_);
  EXPECT_EQ(Control("in_use"), "0");
  EXPECT_EQ(Control("lutm"), kLutm);
}

TEST_P(SeenCopyOfACalendar, InWholeModeShowsItsOldRecordsOrItsNewOnesAndLeavesOtherCalendarsAlone) {
  program_.Environment("QMX_COPY", "whole");
  bool isSeenWithin = false;
  for (int attempt = 0; attempt < 20 && !isSeenWithin; ++attempt) {
    BeginAnew();
    const auto run = program_.Start(Request());
    WatchItsCopy(*run, [&] {
      EXPECT_THAT(RowTexts("tcccp030", Its()), AnyOf(old_, all_));
      isSeenWithin = true;
    });
    ExpectItsNewRecordsAndTheOldOnesOfOthers(*run);
    if (HasFailure()) return;
  }
  EXPECT_TRUE(isSeenWithin);
}

TEST_P(SeenCopyOfACalendar, ThatIsKilledInWholeModeLeavesItsOldRecordsOrItsNewOnesAndTheNextRunMakesItRight) {
  program_.Environment("QMX_COPY", "whole");
  const auto start = [&] {
    BeginAnew();
    return program_.Start(Request());
  };
  const auto run = StoppedWithin(
      start, [&] { return Control("in_use") == "1"; }, [&] { return RowTexts("tcccp030", Its()) == all_; });
  run->Signal(SIGKILL);
  EXPECT_EQ(run->Wait().status, 128 + SIGKILL);
  EXPECT_THAT(RowTexts("tcccp030", Its()), AnyOf(old_, all_));  // a server may do a COMMIT that was on its way
  EXPECT_EQ(RowTexts("tcccp030", "not " + Its()), others_);
  EXPECT_EQ(Control("lutm"), kLutm);

  Sql("update tstables set in_use = 0 where tablename = 'tcccp030'");
  ExpectSuccess(Request());
  EXPECT_EQ(RowTexts("tcccp030", Its()), all_);
  EXPECT_EQ(RowTexts("tcccp030", "not " + Its()), others_);
}

}  // namespace
}  // namespace qmx::test::seen_copies
