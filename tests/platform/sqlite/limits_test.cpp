// What is limited: how long a statement may take, how long a lock is waited for, the disk, the memory.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "platform/database.h"
#include "platform/error.h"
#include "platform/sqlite/driver.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

// The sanitizer's count of the bytes that are in use; absent in a build without it.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace qmx::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using testing::HasSubstr;

constexpr std::chrono::seconds kDefaultTimeout{30};
constexpr const char* kEndless = "with recursive n(x) as (select 1 union all select x+1 from n) select count(*) from n";

class SqliteLimits : public testing::Test {
 protected:
  SqliteLimits() : connection({&driver}, nullptr), other({&driver}, nullptr) {
    connection.Open(text, "", "");
    connection.Execute("create table people (code varchar(20) not null primary key, name text)");
    other.Open(text, "", "");
  }

  static std::string Code(const Error& error) {
    for (const auto& [what, value] : error.Details()) {
      if (what == "code") return value;
    }
    return "";
  }

  template <typename Work>
  static milliseconds Duration(Work&& work) {
    const auto start = steady_clock::now();
    work();
    return std::chrono::duration_cast<milliseconds>(steady_clock::now() - start);
  }

  TempFolder folder;
  std::string text = "Provider=SQLite;Mode=Create;Data Source=" + folder / "local.db";
  SqliteDriver driver;
  Connection connection;
  Connection other;
};

TEST_F(SqliteLimits, AStatementThatTakesLongerThanTheTimeOutIsStopped) {
  connection.CommandTimeout(1);
  const milliseconds duration = Duration([&] {
    const Error error = Raised([&] { connection.Execute(kEndless); });
    EXPECT_EQ(error.Number(), -2147217871);
    EXPECT_THAT(error.Description(), HasSubstr("longer than 1 seconds"));
    EXPECT_EQ(Code(error), "SQLITE_INTERRUPT");
  });
  EXPECT_GE(duration, milliseconds(1000));
  EXPECT_LT(duration, kDefaultTimeout);
  EXPECT_EQ(connection.Execute("insert into people (code) values ('A')"), 1);
}

TEST_F(SqliteLimits, ReadingTheRowsOfARecordsetIsLimitedToo) {
  connection.CommandTimeout(1);
  Recordset records(nullptr);
  EXPECT_EQ(Raised([&] { records.Open(kEndless, connection, kCursorKeyset, kLockOptimistic, kCommandText); }).Number(),
            -2147217871);
  EXPECT_EQ(records.State(), 0);
}

TEST_F(SqliteLimits, ALockOfAnotherProgramIsWaitedForUntilTheTimeOut) {
  other.Execute("begin immediate");
  other.Execute("insert into people (code) values ('A')");
  connection.CommandTimeout(1);
  const milliseconds duration = Duration([&] {
    const Error error = Raised([&] { connection.Execute("insert into people (code) values ('B')"); });
    EXPECT_EQ(error.Number(), -2147217871);
    EXPECT_THAT(error.Description(), HasSubstr("locked by another program"));
    EXPECT_EQ(Code(error), "SQLITE_BUSY");
  });
  EXPECT_GE(duration, milliseconds(1000));
  EXPECT_LT(duration, kDefaultTimeout);
  other.Execute("commit");
  EXPECT_EQ(connection.Execute("insert into people (code) values ('B')"), 1);
}

TEST_F(SqliteLimits, ALockThatIsReleasedInTimeOnlyDelays) {
  other.Execute("begin immediate");
  std::atomic<bool> waits = false;
  std::atomic<bool> isReleased = false;
  std::thread release([&] {
    while (!waits) std::this_thread::yield();
    std::this_thread::sleep_for(milliseconds(150));
    isReleased = true;
    other.Execute("commit");
  });
  waits = true;
  EXPECT_EQ(connection.Execute("insert into people (code) values ('B')"), 1);
  EXPECT_TRUE(isReleased) << "it did not wait";
  release.join();
}

TEST_F(SqliteLimits, ATimeOutOfZeroWaitsForever) {
  connection.CommandTimeout(0);
  other.Execute("begin immediate");
  std::atomic<bool> isReleased = false;
  std::thread release([&] {
    std::this_thread::sleep_for(milliseconds(1200));
    isReleased = true;
    other.Execute("commit");
  });
  EXPECT_EQ(connection.Execute("insert into people (code) values ('B')"), 1);
  EXPECT_TRUE(isReleased) << "it did not wait";
  release.join();
}

TEST_F(SqliteLimits, AReaderIsNotHinderedByAWriter) {
  connection.Execute("insert into people (code) values ('A')");
  other.Execute("begin immediate");
  other.Execute("insert into people (code) values ('B')");
  Recordset records(nullptr);
  records.Open("select * from people", connection, kCursorKeyset, kLockOptimistic, kCommandText);
  EXPECT_EQ(records.recordcount(), 1);
  other.Execute("commit");
}

TEST_F(SqliteLimits, AFullDatabaseIsADiskFullErrorAndWhatWasSavedStays) {
  connection.Execute("pragma max_page_count=4");
  Recordset records(nullptr);
  records.Open("people", connection, kCursorKeyset, kLockOptimistic, kCommandTable);
  std::int32_t saved = 0;
  const Error error = Raised([&] {
    for (;; ++saved) {
      records.AddNew();
      records.Fields("code") = saved;
      records.Fields("name") = std::string(500, 'x');
      records.Update();
    }
  });
  EXPECT_EQ(error.Number(), 61);
  EXPECT_EQ(Code(error), "SQLITE_FULL");
  records.CancelUpdate();
  records.Close();
  EXPECT_GT(saved, 0);
  records.Open("people", other, kCursorKeyset, kLockOptimistic, kCommandTable);
  EXPECT_EQ(records.recordcount(), saved);
}

TEST_F(SqliteLimits, AnErrorCarriesSqlitesOwnMessageAndTheNameOfItsCode) {
  connection.Execute("insert into people (code) values ('A')");
  const Error error = Raised([&] { connection.Execute("insert into people (code) values ('A')"); });
  EXPECT_THAT(error.Description(), HasSubstr("UNIQUE constraint failed: people.code"));
  EXPECT_EQ(Code(error), "SQLITE_CONSTRAINT_PRIMARYKEY");
  EXPECT_EQ(error.Source(), "SQLite");
}

TEST_F(SqliteLimits, AFileThatWasDamagedIsReported) {
  connection.Execute("insert into people (code) values ('A')");
  connection.Close();
  other.Close();
  std::string bytes = ReadFile(folder / "local.db");
  for (std::size_t at = 4096; at < bytes.size(); ++at) bytes[at] = '\x5a';
  WriteFile(folder / "local.db", bytes);
  connection.Open(text, "", "");
  const Error error = Raised([&] { connection.Execute("insert into people (code) values ('B')"); });
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_EQ(Code(error), "SQLITE_CORRUPT");
}

TEST_F(SqliteLimits, AddingRowsToATableKeepsOneOfThemInMemory) {
  if (!__sanitizer_get_current_allocated_bytes) GTEST_SKIP() << "Nobody counts the memory in this build.";
  const std::string name(10'000, 'x');
  const auto grownBy = [&] {
    connection.Execute("delete from people");
    Recordset records(nullptr);
    records.Open("people", connection, kCursorKeyset, kLockOptimistic, kCommandTable);
    const std::size_t before = __sanitizer_get_current_allocated_bytes();
    for (int row = 0; row < 500; ++row) {
      records.AddNew();
      records.Fields("code") = row;
      records.Fields("name") = name;
    }
    const std::size_t after = __sanitizer_get_current_allocated_bytes();
    records.Close();
    return after > before ? after - before : 0;
  };
  grownBy();  // fills the database's own cache of pages
  EXPECT_LT(grownBy(), 500'000u);
}

}  // namespace
}  // namespace qmx::test
