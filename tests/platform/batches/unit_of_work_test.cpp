// Batches and groups within a transaction of the program: they send and never commit, and each batch has a savepoint to
// which a refused one returns.
#include <chrono>

#include "platform/batches/driver.h"
#include "tests/platform/database/record_set_test.h"
#include "tests/support/fake_steady_clock.h"

namespace qmx::test {
namespace {

using std::chrono::milliseconds;
using testing::Contains;
using testing::HasSubstr;

class BatchesInAUnitOfWork : public testing::TestWithParam<DriverUnderTest> {
 protected:
  BatchesInAUnitOfWork() : base_(GetParam().make()), below_(base_->PlainDriver()), connection_({&batching_}, nullptr) {
    connection_.Open(base_->ConnectionText(), "", "");
    connection_.Execute("create table people (code varchar(20) not null primary key, floor smallint)");
    connection_.PrepareAtomic({"people"});
  }

  static void Add(Recordset& records, int from, int to, int bad = -1) {
    for (int number = from; number < to; ++number) {
      records.AddNew();
      records.Fields("code") = std::to_string(number == bad ? from : number);
      records.Fields("floor") = 1;
    }
  }
  std::unique_ptr<Recordset> People() {
    auto records = std::make_unique<Recordset>(nullptr);
    records->Open("people", connection_, kCursorKeyset, kLockOptimistic, kCommandTable);
    return records;
  }
  // What another program sees.
  std::int32_t Saved() {
    Connection other({&base_->PlainDriver()}, nullptr);
    other.Open(base_->ConnectionText(), "", "");
    Recordset records(nullptr);
    records.Open("people", other, kCursorKeyset, kLockOptimistic, kCommandTable);
    return records.recordcount();
  }

  std::unique_ptr<TestDatabase> base_;
  FaultyDriver below_;
  FakeSteadyClock clock_;
  BatchingDriver batching_{below_, clock_};
  Connection connection_;
};
INSTANTIATE_TEST_SUITE_P(Over, BatchesInAUnitOfWork,
                         testing::ValuesIn(DriversUnderTest([](const DriverUnderTest& driver) {
                           return !driver.name.starts_with("SQLite") || driver.name == "SQLite";
                         })),
                         DriverName);

TEST_P(BatchesInAUnitOfWork, AreSentAfter50MillisecondsAndNotCommitted) {
  connection_.Atomically([&] {
    const auto records = People();
    Add(*records, 1000, 1005);
    below_.Restart();
    clock_.PassWhileAThreadWaits(milliseconds(50));
    EXPECT_EQ(below_.CountOf("Add"), 1);
    EXPECT_EQ(below_.CountOf("Prepare savepoint qmx"), 1);
    EXPECT_EQ(below_.CountOf("Prepare release savepoint qmx"), 1);
    EXPECT_EQ(below_.CountOf("Commit"), 0);
    EXPECT_EQ(Saved(), 0);
    records->Close();
    EXPECT_EQ(below_.CountOf("Commit"), 0);
    EXPECT_EQ(Saved(), 0);
  });
  EXPECT_EQ(Saved(), 5);
}

TEST_P(BatchesInAUnitOfWork, OfGroupsAreNotCommittedByTheirTime) {
  connection_.Atomically([&] {
    connection_.Together([&] {
      connection_.Execute("insert into people values ('A', 1)");
      clock_.Pass(milliseconds(1000));
      connection_.Execute("insert into people values ('B', 1)");
    });
    EXPECT_EQ(Saved(), 0);
  });
  EXPECT_EQ(Saved(), 2);
}

TEST_P(BatchesInAUnitOfWork, ReturnToTheirSavepointWhereARowIsRefused) {
  Error error(0, "", "");
  try {
    connection_.Atomically([&] {
      const auto records = People();
      Add(*records, 1000, 1100, 1050);
      below_.Restart();
      records->Update();
    });
  } catch (const Error& raised) {
    error = raised;
  }
  EXPECT_THAT(DescribeChain(error), HasSubstr("key: code='1000'"));
  EXPECT_THAT(below_.Record(), Contains("Prepare savepoint qmx"));
  EXPECT_EQ(Saved(), 0);
}

// The rows would be saved outside of the transaction.
TEST_P(BatchesInAUnitOfWork, AreNotSentRowByRowWhereTheSavepointIsGone) {
  below_.before = [isRefused = false](const std::string& operation) mutable {
    if (operation == "Step" && isRefused) throw Error(errors::kCommand, "Test", "It is gone.");
    isRefused = isRefused || operation == "Add";
    if (operation == "Add") throw Error(errors::kIntegrity, "Test", "The rows are refused.");
  };
  Error error(0, "", "");
  try {
    connection_.Atomically([&] {
      const auto records = People();
      Add(*records, 1000, 1010);
      records->Update();
    });
  } catch (const Error& raised) {
    error = raised;
  }
  EXPECT_THAT(DescribeChain(error), HasSubstr("The rows are refused."));
  EXPECT_THAT(DescribeChain(error), HasSubstr("from that key on"));
  EXPECT_THAT(DescribeChain(error), HasSubstr("key: code='1001'"));  // the first row went alone
  EXPECT_EQ(Saved(), 0);
}

TEST_P(BatchesInAUnitOfWork, OfManyRowsAreCommittedTogether) {
  connection_.Atomically([&] {
    const auto records = People();
    Add(*records, 10000, 15000);
    records->Close();
    EXPECT_EQ(Saved(), 0);
  });
  EXPECT_EQ(Saved(), 5000);
}

// The ERP would have to be asked again for what was written before.
TEST_P(BatchesInAUnitOfWork, ThatTheDatabaseTookBackAreNotTriedAgain) {
  for (const char* refused : {"Prepare insert", "Step"}) {
    int asked = 0;
    const Error error = Raised([&] {
      connection_.Atomically([&] {
        connection_.Execute("insert into people values ('A', 1)");
        below_.before = [&](const std::string& operation) {
          if (!operation.starts_with(refused)) return;
          ++asked;
          throw Error(errors::kProviderUnspecified, "ODBC", "Deadlock found.").With("SQLSTATE", "40001");
        };
        connection_.Execute("insert into people values ('B', 1)");
      });
    });
    below_.before = nullptr;
    EXPECT_EQ(error.Description(), "Deadlock found.");
    EXPECT_EQ(asked, 1) << refused;
    EXPECT_EQ(batching_.Retries(), 0);
    EXPECT_EQ(Saved(), 0);
  }
}

TEST_P(BatchesInAUnitOfWork, BeginAgainIfTheDatabaseAsksForItAtTheBeginning) {
  int asked = 0;
  below_.before = [&](const std::string& operation) {
    if (operation != "Begin" || ++asked > 2) return;
    throw Error(errors::kProviderUnspecified, "ODBC", "Not ready.").With("native code", "1047");
  };
  connection_.Atomically([&] { connection_.Execute("insert into people values ('A', 1)"); });
  below_.before = nullptr;
  EXPECT_EQ(asked, 3);
  EXPECT_EQ(batching_.Retries(), 2);
  EXPECT_EQ(Saved(), 1);
}

}  // namespace
}  // namespace qmx::test
