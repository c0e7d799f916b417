// Conflicts that a server itself resolves by taking a transaction back: in PostgreSQL where every transaction is
// serializable, and a deadlock in MariaDB.
#include <future>
#include <thread>

#include "platform/batches/driver.h"
#include "tests/platform/database/record_set_test.h"
#include "tests/support/fake_steady_clock.h"

namespace qmx::test::conflicts {
namespace {

class Conflicts : public testing::TestWithParam<DriverUnderTest> {
 protected:
  void SetUp() override {
    Open(connection_);
    Open(other_);
    connection_.Execute("create table people (code varchar(20) not null primary key, floor smallint)");
    connection_.Execute("insert into people values ('A', 1), ('B', 1)");
  }

  virtual std::string Settings() const { return ""; }

  void Open(Connection& connection) { connection.Open(base_->ConnectionText() + Settings(), "", ""); }

  void Set(Connection& connection, const std::string& code, int floor) {
    connection.Execute("update people set floor = " + std::to_string(floor) + " where code = '" + code + "'");
  }

  std::string Rows(Connection& connection, const std::string& condition = "") {
    Recordset records(nullptr);
    records.Open("select * from people" + condition + " order by code", connection, kCursorKeyset, kLockOptimistic,
                 kCommandText);
    std::string rows;
    for (; !records.Eof(); records.MoveNext()) {
      rows += records.Fields("code").Value().ToText() + records.Fields("floor").Value().ToText();
    }
    return rows;
  }

  std::unique_ptr<TestDatabase> base_ = GetParam().make();
  FakeSteadyClock clock_;  // so that a group is not committed because time passes
  BatchingDriver batching_{base_->PlainDriver(), clock_};
  Connection connection_{{&batching_}, nullptr};
  Connection other_{{&base_->PlainDriver()}, nullptr};
};

std::vector<DriverUnderTest> Servers(const std::string& name) {
  return DriversUnderTest([&](const DriverUnderTest& driver) { return driver.name == name; });
}

class ConflictsInPostgreSQL : public Conflicts {
 protected:
  std::string Settings() const override { return ";ConnSettings={set default_transaction_isolation = 'serializable'}"; }

  // Each of the two reads what the other one writes, so one has to be taken back.
  void WriteWhatTheOtherReads() {
    Set(connection_, "B", 7);
    EXPECT_EQ(Rows(connection_, " where code = 'A'"), "A1");
    other_.Execute("begin");
    EXPECT_EQ(Rows(other_, " where code = 'B'"), "B1");
    Set(other_, "A", 8);
    other_.Execute("commit");
  }
};
INSTANTIATE_TEST_SUITE_P(Over, ConflictsInPostgreSQL, testing::ValuesIn(Servers("PostgreSQL")), DriverName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ConflictsInPostgreSQL);

TEST_P(ConflictsInPostgreSQL, AtAStatementOfAGroupAreTriedAgain) {
  connection_.Together([&] {
    connection_.Execute("insert into people values ('C', 3)");
    Set(other_, "A", 2);
    Set(connection_, "A", 4);
    connection_.Execute("insert into people values ('D', 5)");
  });
  EXPECT_EQ(Rows(other_), "A4B1C3D5");
  EXPECT_GE(batching_.Retries(), 1);
}

TEST_P(ConflictsInPostgreSQL, AtTheCommitOfAGroupAreTriedAgain) {
  connection_.Together([&] { WriteWhatTheOtherReads(); });
  EXPECT_EQ(Rows(other_), "A8B7");
  EXPECT_GE(batching_.Retries(), 1);
}

TEST_P(ConflictsInPostgreSQL, AtTheSelectOfAGroupAreTriedAgain) {
  std::string seen;
  connection_.Together([&] {
    WriteWhatTheOtherReads();
    seen = Rows(connection_);
  });
  EXPECT_EQ(seen, "A8B7");
}

class ADeadlockInMariaDB : public Conflicts {};
INSTANTIATE_TEST_SUITE_P(Over, ADeadlockInMariaDB, testing::ValuesIn(Servers("MariaDB")), DriverName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ADeadlockInMariaDB);

// The server takes back the transaction that wrote less.
TEST_P(ADeadlockInMariaDB, OfAGroupIsTriedAgain) {
  connection_.Execute("create table numbers (number integer not null primary key)");
  std::promise<void> hasB, mayTakeA;
  std::future<void> other = std::async(std::launch::async, [&] {
    other_.Execute("begin");
    other_.Execute("insert into numbers select seq from seq_1_to_500");
    Set(other_, "B", 2);
    hasB.set_value();
    mayTakeA.get_future().wait();
    Set(other_, "A", 2);
    other_.Execute("commit");
  });
  hasB.get_future().wait();
  connection_.Together([&] {
    Set(connection_, "A", 7);
    mayTakeA.set_value();
    Set(connection_, "B", 7);
    connection_.Execute("insert into people values ('C', 7)");
  });
  other.get();
  EXPECT_EQ(Rows(other_), "A7B7C7");
  EXPECT_GE(batching_.Retries(), 1);
}

TEST_P(ADeadlockInMariaDB, WhereALockIsNotReleasedInTimeTheStatementIsTriedAgain) {
  connection_.Execute("set session innodb_lock_wait_timeout = 1");
  std::promise<void> hasA;
  std::future<void> other = std::async(std::launch::async, [&] {
    other_.Execute("begin");
    Set(other_, "A", 2);
    hasA.set_value();
    while (batching_.Retries() == 0) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    other_.Execute("commit");
  });
  hasA.get_future().wait();
  Set(connection_, "A", 7);
  other.get();
  EXPECT_EQ(Rows(other_), "A7B1");
  EXPECT_GE(batching_.Retries(), 1);
}

}  // namespace
}  // namespace qmx::test::conflicts
