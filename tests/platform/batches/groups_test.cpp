// Rows that are written one by one and committed together: what others see of them, and what a failure leaves.
#include <chrono>
#include <thread>

#include "platform/batches/driver.h"
#include "tests/platform/database/record_set_test.h"
#include "tests/support/fake_steady_clock.h"

namespace qmx::test {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;

class Groups : public testing::TestWithParam<DriverUnderTest> {
 protected:
  Groups() : base_(GetParam().make()), below_(base_->PlainDriver()), connection_({&batching_}, nullptr) {
    connection_.Open(base_->ConnectionText(), "", "");
    connection_.Execute("create table people (code varchar(20) not null primary key, floor smallint)");
  }

  void Add(const std::string& code) { connection_.Execute("insert into people values ('" + code + "', 1)"); }

  std::unique_ptr<Connection> Another() {
    auto other = std::make_unique<Connection>(std::vector<Driver*>{&base_->PlainDriver()}, nullptr);
    other->Open(base_->ConnectionText(), "", "");
    return other;
  }

  // What another program sees.
  std::string Codes() {
    const auto other = Another();
    Recordset records(nullptr);
    records.Open("select code, floor from people order by code", *other, kCursorKeyset, kLockOptimistic, kCommandText);
    std::string codes;
    for (; !records.Eof(); records.MoveNext()) {
      codes += records.Fields(std::size_t{0}).Value().ToText() + records.Fields(1).Value().ToText();
    }
    return codes;
  }

  std::unique_ptr<TestDatabase> base_;
  FaultyDriver below_;
  FakeSteadyClock clock_;
  BatchingDriver batching_{below_, clock_};
  Connection connection_;
};
INSTANTIATE_TEST_SUITE_P(Over, Groups, testing::ValuesIn(DriversUnderTest([](const DriverUnderTest& driver) {
                           return !driver.name.starts_with("SQLite") || driver.name == "SQLite";
                         })),
                         DriverName);

TEST_P(Groups, TakeFewCommitsForManyRows) {
  connection_.Together([&] {
    below_.Restart();
    for (int code = 100; code < 260; ++code) Add(std::to_string(code));
  });
  EXPECT_LE(below_.CountOf("Commit"), 160 / 2);  // one for 16, more where time runs out
  EXPECT_EQ(below_.CountOf("Begin"), below_.CountOf("Commit"));
  EXPECT_EQ(Codes().size(), 160 * 4);
}

TEST_P(Groups, AreNotOpenedUnlessAllowed) {
  below_.Restart();
  for (const char* code : {"A", "B", "C"}) Add(code);
  EXPECT_EQ(below_.CountOf("Begin"), 0);
  EXPECT_EQ(Codes(), "A1B1C1");
}

TEST_P(Groups, AreCommittedWhenTheWorkEnds) {
  connection_.Together([&] {
    for (const char* code : {"A", "B", "C"}) Add(code);
  });
  EXPECT_EQ(Codes(), "A1B1C1");
  Add("D");
  EXPECT_EQ(Codes(), "A1B1C1D1");
}

TEST_P(Groups, AreCommittedWhenTheWorkFails) {
  EXPECT_THROW(connection_.Together([&] {
    for (const char* code : {"A", "B", "C"}) Add(code);
    throw std::runtime_error("the ERP is gone");
  }),
               std::runtime_error);
  EXPECT_EQ(Codes(), "A1B1C1");
}

TEST_P(Groups, AreCommittedAlsoBetweenCalls) {
  connection_.Together([&] {
    for (const char* code : {"A", "B", "C"}) Add(code);
    clock_.PassWhileAThreadWaits(milliseconds(40));
    EXPECT_EQ(Codes(), "A1B1C1");
  });
}

TEST_P(Groups, LetOthersWriteWithin50MillisecondsBetweenCalls) {
  const auto other = Another();
  other->CommandTimeout(1);
  connection_.Together([&] {
    for (int round = 0; round < 5; ++round) {
      Add("A" + std::to_string(round));
      clock_.PassWhileAThreadWaits(milliseconds(50));
      other->Execute("insert into people values ('B" + std::to_string(round) + "', 2)");
    }
  });
  EXPECT_EQ(Codes(), "A01A11A21A31A41B02B12B22B32B42");
}

TEST_P(Groups, LetOthersWriteWhileTheProgramKeepsWriting) {
  const auto other = Another();
  connection_.Together([&] {
    std::atomic<bool> hasWritten = false;
    std::thread writer([&] {
      other->Execute("insert into people values ('other', 2)");
      hasWritten = true;
    });
    int rows = 0;
    for (; !hasWritten && rows < 1'000'000; ++rows) connection_.Execute("update people set floor = floor + 0");
    writer.join();
    EXPECT_LT(rows, 1'000'000);
  });
  EXPECT_THAT(Codes(), HasSubstr("other2"));
}

TEST_P(Groups, AreSeenByTheProgramItself) {
  connection_.Together([&] {
    Add("A");
    EXPECT_EQ(connection_.Execute("update people set floor = 3 where code = 'A'"), 1);
    Recordset records(nullptr);
    records.Open("select * from people where code = 'A'", connection_, kCursorKeyset, kLockOptimistic, kCommandText);
    EXPECT_EQ(records.Fields("floor").Value().ToInt32(), 3);
    records.Fields("floor") = 4;
    records.Update();
    records.Close();
    EXPECT_EQ(connection_.Execute("delete from people where floor = 3"), 0);
  });
  EXPECT_EQ(Codes(), "A4");
}

TEST_P(Groups, AreCommittedBeforeAFailureIsRaised) {
  connection_.Execute("insert into people values ('D', 9)");
  connection_.Together([&] {
    for (const char* code : {"A", "B", "C"}) Add(code);
    const Error error = Raised([&] { Add("D"); });
    EXPECT_EQ(error.Number(), -2147217873);
    EXPECT_EQ(error.Cause(), nullptr);
    EXPECT_EQ(Codes(), "A1B1C1D9");
    Add("E");
  });
  EXPECT_EQ(Codes(), "A1B1C1D9E1");
}

TEST_P(Groups, AreCommittedBeforeAFailureToReadIsRaised) {
  connection_.Together([&] {
    for (const char* code : {"A", "B", "C"}) Add(code);
    Recordset records(nullptr);
    const auto open = [&] {
      records.Open("select * from nobody", connection_, kCursorKeyset, kLockOptimistic, kCommandText);
    };
    EXPECT_EQ(Raised(open).Number(), -2147217865);
    EXPECT_EQ(Codes(), "A1B1C1");
    Add("D");
  });
  EXPECT_EQ(Codes(), "A1B1C1D1");
}

TEST_P(Groups, AreExecutedAfterWaitingRowsAndBeforeLaterOnes) {
  Recordset records(nullptr);
  records.Open("people", connection_, kCursorKeyset, kLockOptimistic, kCommandTable);
  connection_.Together([&] {
    const auto add = [&](const char* code) {
      records.AddNew();
      records.Fields("code") = code;
      records.Fields("floor") = 1;
    };
    for (const char* code : {"A", "B", "C"}) add(code);  // C is not saved yet
    EXPECT_EQ(connection_.Execute("update people set floor = 2"), 2);
    for (const char* code : {"D", "E"}) add(code);
    EXPECT_EQ(connection_.Execute("update people set floor = floor + 5"), 4);
    records.Close();
  });
  EXPECT_EQ(Codes(), "A7B7C6D6E1");
}

TEST_P(Groups, AreExecutedAgainOneByOneIfTheyCannotBeCommitted) {
  connection_.Together([&] {
    below_.before = [this](const std::string& operation) {
      if (operation != "Commit") return;
      below_.before = nullptr;
      throw Error(errors::kDiskFull, "Test", "No space is left.");
    };
    for (const char* code : {"A", "B", "C"}) Add(code);
  });
  EXPECT_EQ(Codes(), "A1B1C1");
}

// As a cluster does, where another node's transaction has won.
TEST_P(Groups, AreExecutedAgainWhereTheDatabaseTookThemBackAndAsksForItAtASelect) {
  std::int64_t affected = 0;
  connection_.Together([&] {
    for (const char* code : {"A", "B"}) Add(code);
    below_.before = [this](const std::string& operation) {
      if (!operation.starts_with("Prepare select")) return;
      below_.before = nullptr;
      throw Error(errors::kProviderUnspecified, "ODBC", "Deadlock found.").With("SQLSTATE", "40001");
    };
    Recordset records(nullptr);
    records.Open("select * from people where code = 'B'", connection_, kCursorKeyset, kLockOptimistic, kCommandText);
    EXPECT_EQ(Codes(), "A1B1");
    EXPECT_EQ(records.recordcount(), 1);
    records.Fields("floor") = 4;
    records.Update();
    records.Close();
    affected = connection_.Execute("delete from people where code = 'A'");
  });
  EXPECT_EQ(Codes(), "B4");
  EXPECT_EQ(affected, 1);
  EXPECT_EQ(batching_.Retries(), 2);  // the group, and the select
}

TEST_P(Groups, AreCommittedBeforeAnyOtherStatement) {
  connection_.Together([&] {
    for (const char* code : {"A", "B"}) Add(code);
    connection_.Execute("create table places (code varchar(20))");
    EXPECT_EQ(Codes(), "A1B1");
  });
}

// The other systems have no such table.
class GroupsOnMariaDb : public Groups {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(GroupsOnMariaDb);
INSTANTIATE_TEST_SUITE_P(Over, GroupsOnMariaDb, testing::ValuesIn(DriversUnderTest([](const DriverUnderTest& driver) {
                           return driver.name == "MariaDB";
                         })),
                         DriverName);

TEST_P(GroupsOnMariaDb, AreNotOpenedForATableThatCannotRollBack) {
  connection_.Execute("create table places (code varchar(20) not null primary key) engine = MyISAM");
  below_.Restart();
  connection_.Together([&] {
    for (const char* code : {"A", "B"}) connection_.Execute(std::string("insert into places values ('") + code + "')");
    EXPECT_EQ(Raised([&] { connection_.Execute("insert into places values ('B')"); }).Number(), -2147217873);
  });
  EXPECT_EQ(below_.CountOf("Begin"), 0);
}

// What another run would leave that commits row by row, after so many of its statements.
std::vector<std::string> States() { return {"", "A1", "A1B1", "A2B1", "A2B1C1", "B1C1", "B1C3", "B1C3D1"}; }

TEST_P(Groups, KeepRowsThatWereSavedBeforeAFailure) {
  const std::vector<std::string> states = States();
  const std::vector<std::string> statements = {
      "insert into people values ('A', 1)",         "insert into people values ('B', 1)",
      "update people set floor = 2 where code='A'", "insert into people values ('C', 1)",
      "delete from people where code='A'",          "update people set floor = 3 where code='C'",
      "insert into people values ('D', 1)"};
  for (const bool forGood : {false, true}) {
    for (std::int64_t operation = 1;; ++operation) {
      connection_.Execute("delete from people");
      Connection connection({&batching_}, nullptr);  // one that lost its transaction stays lost
      connection.Open(base_->ConnectionText(), "", "");
      below_.Restart();
      forGood ? below_.FailFrom(operation) : below_.FailAt(operation);
      std::size_t saved = 0;
      bool wasTold = false;
      try {
        connection.Together([&] {
          for (const std::string& statement : statements) {
            connection.Execute(statement);
            ++saved;
          }
        });
      } catch (const Error& error) {
        wasTold = true;
        EXPECT_EQ(error.Number(), -2147467259);
      }
      below_.FailAt(0);
      const std::string codes = Codes();
      if (!wasTold) saved = statements.size();
      if (forGood) {
        const std::vector<std::string> begun(states.begin(), states.begin() + static_cast<std::ptrdiff_t>(saved) + 1);
        EXPECT_THAT(begun, testing::Contains(codes)) << "at operation " << operation;
      } else {
        EXPECT_EQ(codes, states[saved]) << "at operation " << operation;
      }
      EXPECT_TRUE(wasTold || codes == states.back()) << codes << " at operation " << operation;
      if (!below_.HasFailed()) break;
      ASSERT_LT(operation, 200);
    }
  }
}

}  // namespace
}  // namespace qmx::test
