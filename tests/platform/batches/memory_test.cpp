// Memory that runs out while rows are sent or groups are committed or executed again: raises error 7, never ends the
// program, and saves a beginning of the written rows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "platform/batches/driver.h"
#include "platform/database.h"
#include "platform/error.h"
#include "platform/sqlite/driver.h"
#include "tests/support/temp_folder.h"

namespace {

std::atomic<long> held = 0;           // allocations that were not freed yet
std::atomic<long> left = -1;          // allocations that succeed yet; negative for all
std::atomic<bool> isForGood = false;  // whether those after the first failure fail too
std::atomic<bool> hasFailed = false;

bool MayAllocate() {
  long now = left;
  while (now > 0 && !left.compare_exchange_weak(now, now - 1)) continue;
  if (now != 0) return true;
  if (!isForGood) left = -1;
  hasFailed = true;
  return false;
}

}  // namespace

void* operator new(std::size_t size) {
  if (!MayAllocate()) throw std::bad_alloc();
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (!memory) throw std::bad_alloc();
  ++held;
  return memory;
}
void operator delete(void* memory) noexcept {
  if (memory) --held;
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }

namespace qmx::test {
namespace {

class Memory : public testing::Test {
 protected:
  Memory() { Quiet().Execute("create table people (code varchar(20) not null primary key, name varchar(100))"); }

  Connection& Quiet() {
    if (quiet_.State() == 0) quiet_.Open(Text(), "", "");
    return quiet_;
  }

  std::string Text() const { return "Provider=SQLite;Mode=Create;Data Source=" + folder_ / "local.db"; }

  std::string Codes() {
    Recordset records(nullptr);
    records.Open("select code from people order by rowid", Quiet(), kCursorKeyset, kLockOptimistic, kCommandText);
    std::string codes;
    for (; !records.Eof(); records.MoveNext()) codes += records.Fields(std::size_t{0}).Value().ToText();
    return codes;
  }

  template <typename Work>
  void RunOutAtEach(const std::string& all, Work&& work) {
    for (const bool forGood : {false, true}) {
      SCOPED_TRACE(forGood ? "for good" : "once");
      isForGood = forGood;
      RunOutFromEach(all, work);
    }
  }

  // Fails each allocation in turn that the work makes, until it makes fewer.
  template <typename Work>
  void RunOutFromEach(const std::string& all, Work&& work) {
    long errors = 0;
    for (long allocation = 0;; ++allocation) {
      SCOPED_TRACE("at allocation " + std::to_string(allocation));
      Quiet().Execute("delete from people");
      auto connection = std::make_unique<Connection>(std::vector<Driver*>{&batching_}, nullptr);
      connection->Open(Text(), "", "");
      std::int32_t number = 0;
      hasFailed = false;
      left = allocation;
      try {
        work(*connection);
      } catch (const Error& error) {
        left = -1;
        number = error.Number();
      } catch (const std::bad_alloc&) {
        left = -1;
        number = errors::kOutOfMemory;
      }
      left = -1;
      connection.reset();
      const std::string codes = Codes();
      EXPECT_TRUE(all.starts_with(codes)) << codes;
      EXPECT_TRUE(number == 0 || number == errors::kOutOfMemory) << number;
      EXPECT_TRUE(number != 0 || codes == all) << codes;
      errors += number == 0 ? 0 : 1;
      if (!hasFailed || HasFailure()) break;
    }
    EXPECT_GT(errors, 20);
  }

  template <typename Work>
  static bool IsDone(Work&& work) {
    try {
      work();
      return true;
    } catch (const std::exception&) {
      return false;
    }
  }

  TempFolder folder_;
  SqliteDriver sqlite_;
  BatchingDriver batching_{sqlite_};
  Connection quiet_{{&sqlite_}, nullptr};
};

constexpr const char* kName = "a name that is too long to be kept within the value itself";

TEST_F(Memory, IsNotHeldForEachAddedRow) {
  Connection connection({&batching_}, nullptr);
  connection.Open(Text(), "", "");
  Recordset records(nullptr);
  records.Open("people", connection, kCursorKeyset, kLockOptimistic, kCommandTable);
  int number = 0;
  const auto add = [&](int rows) {
    while (rows-- > 0) {
      records.AddNew();
      records.Fields("code") = "a code, number " + std::to_string(++number);
      records.Fields("name") = kName;
    }
    records.Update();
  };
  add(500);
  const long before = held;
  add(2000);
  EXPECT_LT(held - before, 500);
  EXPECT_EQ(records.recordcount(), 2500);
}

TEST_F(Memory, ThatRunsOutWhileRowsAreSentTogetherIsError7) {
  RunOutAtEach("ABCDEF", [](Connection& connection) {
    Recordset records(nullptr);
    records.Open("people", connection, kCursorKeyset, kLockOptimistic, kCommandTable);
    for (const char* code : {"A", "B", "C", "D", "E", "F"}) {
      records.AddNew();
      records.Fields("code") = code;
      records.Fields("name") = kName;
    }
    records.Close();
    connection.Close();
  });
}

TEST_F(Memory, ThatRunsOutInAGroupIsError7) {
  RunOutAtEach("ABCDEF", [](Connection& connection) {
    connection.Together([&] {
      for (const char* code : {"A", "B", "C", "D", "E", "F"}) {
        connection.Execute(
            SqlText("insert into people values ('").Value(code).Append("', '").Value(kName).Append("')"));
      }
    });
    connection.Close();
  });
}

// The unit of work fails as a whole, even if there is no memory to remember why. Its last row may be refused for its
// key.
TEST_F(Memory, ThatRunsOutForARowOfAUnitOfWorkSavesNone) {
  for (const char* last : {"D", "A"}) {
    std::vector<SqlText> inserts;
    for (const char* code : {"A", "B", "C", last}) {
      inserts.push_back(SqlText("insert into people values ('").Value(code).Append("', '").Value(kName).Append("')"));
    }
    isForGood = true;
    for (long allocation = 0;; ++allocation) {
      SCOPED_TRACE(std::string(last) + " at allocation " + std::to_string(allocation));
      Quiet().Execute("delete from people");
      Connection connection({&batching_}, nullptr);
      connection.Open(Text(), "", "");
      hasFailed = false;
      left = allocation;
      const bool isSaved = IsDone([&] {
        connection.Atomically([&] {
          for (const SqlText& insert : inserts) {
            if (!IsDone([&] { connection.Execute(insert); })) left = -1;  // there is memory again
          }
        });
      });
      left = -1;
      const bool isKnown = IsDone([&] { connection.Close(); });  // memory may have run out in the COMMIT
      const std::string codes = Codes();
      EXPECT_TRUE(codes == (isSaved ? "ABCD" : "") || (!isKnown && codes == "ABCD")) << codes;
      if (!hasFailed || HasFailure()) break;
      ASSERT_LT(allocation, 10'000);
    }
  }
}

// As the expansion of calendars goes on after a row that could not be added.
TEST_F(Memory, ThatRunsOutForARowOfAGroupLosesThatRowAlone) {
  isForGood = false;
  for (long allocation = 0;; ++allocation) {
    Quiet().Execute("delete from people");
    Connection connection({&batching_}, nullptr);
    connection.Open(Text(), "", "");
    std::string added;
    hasFailed = false;
    left = allocation;
    bool isTogether = false;
    try {
      connection.Together([&] {
        for (const char* code : {"A", "B", "C", "D"}) {
          try {
            connection.Execute(
                SqlText("insert into people values ('").Value(code).Append("', '").Value(kName).Append("')"));
            added += code;
          } catch (const std::exception&) {  // the next one is tried
          }
        }
      });
      isTogether = true;
    } catch (const std::exception&) {
    }
    left = -1;
    connection.Close();
    EXPECT_TRUE(!isTogether || Codes() == added) << Codes() << " and not " << added << " at allocation " << allocation;
    if (!hasFailed || HasFailure()) break;
    ASSERT_LT(allocation, 10'000);
  }
}

TEST_F(Memory, ThatRunsOutWhileAGroupIsDoneAgainIsError7) {
  RunOutAtEach("ABC", [](Connection& connection) {
    connection.Together([&] {
      for (const char* code : {"A", "B", "C"}) {
        connection.Execute(
            SqlText("insert into people values ('").Value(code).Append("', '").Value(kName).Append("')"));
      }
      try {
        connection.Execute("insert into people values ('A', 'again')");
      } catch (const Error& error) {
        if (error.Number() != errors::kIntegrity) throw;
      }
    });
    connection.Close();
  });
}

}  // namespace
}  // namespace qmx::test
