// Rows that are sent together, over every database system.
#include <chrono>

#include "platform/batches/driver.h"
#include "tests/platform/database/record_set_test.h"
#include "tests/support/fake_steady_clock.h"

namespace qmx::test {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;

class Batches : public testing::TestWithParam<DriverUnderTest> {
 protected:
  Batches() : base(GetParam().make()), below(base->PlainDriver()), connection({&batching}, nullptr) {
    connection.Open(base->ConnectionText(), "", "");
    connection.Execute(
        "create table people (code varchar(20) not null primary key, name varchar(100), floor smallint)");
  }

  std::unique_ptr<Recordset> Opened(const char* source, int options = kCommandTable) {
    auto records = std::make_unique<Recordset>(nullptr);
    records->Open(source, connection, kCursorKeyset, kLockOptimistic, options);
    return records;
  }

  static void Add(Recordset& records, const std::string& code) {
    records.AddNew();
    records.Fields("code") = code;
    records.Fields("floor") = 1;
  }

  // What another program sees.
  std::string Codes() {
    Connection other({&base->GetDriver()}, nullptr);
    other.Open(base->ConnectionText(), "", "");
    Recordset records(nullptr);
    records.Open("select code from people order by code", other, kCursorKeyset, kLockOptimistic, kCommandText);
    std::string codes;
    for (; !records.Eof(); records.MoveNext()) codes += records.Fields(std::size_t{0}).Value().ToText();
    return codes;
  }

  std::unique_ptr<TestDatabase> base;
  FaultyDriver below;
  FakeSteadyClock clock;
  BatchingDriver batching{below, clock};
  Connection connection;
};
INSTANTIATE_TEST_SUITE_P(Over, Batches, testing::ValuesIn(DriversUnderTest()), DriverName);

TEST_P(Batches, SendManyRowsWithFewStatements) {
  const auto records = Opened("people");
  below.Restart();
  for (int number = 1000; number < 2000; ++number) Add(*records, std::to_string(number));
  records->Close();
  EXPECT_LT(below.CountOf("Step"), 300);
  const auto found = Opened("select count(*), sum(floor), min(code), max(code) from people", kCommandText);
  EXPECT_EQ(found->Fields(std::size_t{0}).Value().ToInt32(), 1000);
  EXPECT_EQ(found->Fields(std::size_t{1}).Value().ToInt32(), 1000);
  EXPECT_EQ(found->Fields(std::size_t{2}).Value(), Variant("1000"));
  EXPECT_EQ(found->Fields(std::size_t{3}).Value(), Variant("1999"));
}

TEST_P(Batches, SendTheFirstRowAfterAPauseAtOnce) {
  const auto records = Opened("people");
  Add(*records, "A");
  records->AddNew();
  EXPECT_EQ(Codes(), "A");
  clock.Pass(milliseconds(50));
  records->Fields("code") = "B";
  records->AddNew();
  EXPECT_EQ(Codes(), "AB");
}

TEST_P(Batches, SendWaitingRowsAlsoBetweenCalls) {
  const auto records = Opened("people");
  for (const char* code : {"A", "B", "C", "D"}) Add(*records, code);
  clock.PassWhileAThreadWaits(milliseconds(49));
  EXPECT_EQ(Codes(), "A");
  clock.PassWhileAThreadWaits(milliseconds(1));
  EXPECT_EQ(Codes(), "ABC");  // D is not saved yet
}

TEST_P(Batches, SendWaitingRowsAtUpdateAndAtClose) {
  const auto records = Opened("people");
  for (const char* code : {"A", "B", "C"}) Add(*records, code);
  records->Update();
  EXPECT_EQ(Codes(), "ABC");
  for (const char* code : {"D", "E", "F"}) Add(*records, code);
  records->Close();
  EXPECT_EQ(Codes(), "ABCDEF");
}

TEST_P(Batches, SendWaitingRowsBeforeAnyOtherStatement) {
  const auto records = Opened("people");
  for (const char* code : {"A", "B", "C"}) Add(*records, code);
  EXPECT_EQ(Opened("select * from people", kCommandText)->recordcount(), 2);
  for (const char* code : {"D", "E"}) Add(*records, code);
  EXPECT_EQ(connection.Execute("update people set name='x'"), 4);
  records->CancelUpdate();
  EXPECT_EQ(records->recordcount(), 4);
}

TEST_P(Batches, KeepTheOrderOfRowsWithDifferentColumns) {
  connection.Execute(
      "create table parts (code varchar(20) not null primary key, whole varchar(20), foreign key (whole) references "
      "people (code))");
  // SQLite heeds the foreign key only where it is asked to.
  if (GetParam().name.starts_with("SQLite")) connection.Execute("pragma foreign_keys = on");
  EXPECT_EQ(Raised([&] { connection.Execute("insert into parts values ('X1', 'nobody')"); }).Number(), -2147217873);
  const auto people = Opened("people");
  const auto parts = Opened("parts");
  for (const char* code : {"A", "B", "C"}) {
    Add(*people, code);
    people->AddNew();  // the person is saved; what began is dropped
    people->CancelUpdate();
    parts->AddNew();
    parts->Fields("code") = std::string(code) + "1";
    parts->Fields("whole") = code;
  }
  parts->Close();
  people->Close();
  EXPECT_EQ(Codes(), "ABC");
  EXPECT_EQ(Opened("select * from parts", kCommandText)->recordcount(), 3);
}

TEST_P(Batches, KeepTheRowsBeforeABadOneAndNoneAfterIt) {
  connection.Execute("insert into people (code) values ('D')");
  const auto records = Opened("people");
  const Error error = Raised([&] {
    for (const char* code : {"A", "B", "C", "D", "E", "F"}) Add(*records, code);
    records->Update();
  });
  EXPECT_EQ(error.Number(), -2147217873);
  EXPECT_EQ(error.DetailOf("table"), "people");
  EXPECT_EQ(error.DetailOf("key"), "code='D'");
  EXPECT_THAT(error.DetailOf("statement"), HasSubstr("insert into"));
  EXPECT_EQ(error.Cause(), nullptr);
  records->CancelUpdate();
  records->Close();
  EXPECT_EQ(Codes(), "ABCD");
  // The connection is as good as before.
  const auto again = Opened("people");
  for (const char* code : {"X", "Y", "Z"}) Add(*again, code);
  again->Close();
  EXPECT_EQ(Codes(), "ABCDXYZ");
}

TEST_P(Batches, OfAThousandRowsEndAtTheBadOneAsSingleRowsWould) {
  connection.Execute(
      "create table items (code varchar(20) not null primary key, name varchar(10) not null, share numeric(5,2))");
  connection.Execute("insert into items values ('taken', 'x', 1)");
  struct BadRow {
    std::string code;
    Variant name;
    double share;
    int place;
  };
  std::vector<BadRow> badRows = {
      {"taken", "x", 1, 1}, {"taken", "x", 1, 999}, {"taken", "x", 1, 400}, {"bad", Variant::Null(), 1, 400}};
  if (!GetParam().name.starts_with("SQLite")) {  // it takes texts of any length and numbers of any size
    badRows.push_back({"bad", "a name that is too long", 1, 400});
    badRows.push_back({"bad", "x", 1000, 400});
  }
  for (const BadRow& bad : badRows) {
    const auto add = [](Recordset& records, const std::string& code, const Variant& name, double share) {
      records.AddNew();
      records.Fields("code") = code;
      records.Fields("name") = name;
      records.Fields("share") = share;
    };
    const auto records = Opened("items");
    const Error alone = Raised([&] {
      add(*records, bad.code, bad.name, bad.share);
      records->Update();
    });
    records->CancelUpdate();
    const Error error = Raised([&] {
      for (int row = 0; row < 1000; ++row) {
        if (row == bad.place) add(*records, bad.code, bad.name, bad.share);
        add(*records, "row " + std::to_string(row), "a name", 1.5);
      }
      records->Update();
    });
    EXPECT_EQ(error.Number(), alone.Number());
    EXPECT_EQ(error.Description(), alone.Description());
    EXPECT_EQ(error.DetailOf("key"), "code='" + bad.code + "'");
    records->CancelUpdate();
    records->Close();
    EXPECT_EQ(connection.Execute("delete from items where code like 'row %'"), bad.place) << bad.code;
  }
}

TEST_P(Batches, RaiseAFailureBetweenCallsAtTheNextCall) {
  connection.Execute("insert into people (code) values ('C')");
  const auto records = Opened("people");
  for (const char* code : {"A", "B", "C", "D"}) Add(*records, code);
  clock.PassWhileAThreadWaits(milliseconds(50));
  const Error error = Raised([&] { Add(*records, "E"); });
  EXPECT_EQ(error.Number(), -2147217873);
  EXPECT_EQ(error.DetailOf("key"), "code='C'");
  records->CancelUpdate();
  records->Close();
  EXPECT_EQ(Codes(), "ABC");
  connection.Close();
}

TEST_P(Batches, RaiseAFailureNotYetReportedWhenTheConnectionCloses) {
  connection.Execute("insert into people (code) values ('C')");
  {
    const auto records = Opened("people");
    for (const char* code : {"A", "B", "C", "D"}) Add(*records, code);
  }
  EXPECT_EQ(Raised([&] { connection.Close(); }).DetailOf("key"), "code='C'");
  EXPECT_EQ(connection.State(), 0);
  EXPECT_EQ(Codes(), "ABC");
}

TEST_P(Batches, NameTheBadRowsColumnsThatMakeItsKey) {
  connection.Execute(
      "create table skills (emno varchar(6) not null, skll varchar(6) not null, primary key (emno, skll))");
  const auto records = Opened("skills");
  const Error error = Raised([&] {
    for (const char* skill : {"a", "b", "c", "b", "d"}) {
      records->AddNew();
      records->Fields("skll") = skill;
      records->Fields("emno") = "E1";
    }
    records->Update();
  });
  EXPECT_EQ(error.DetailOf("key"), "emno='E1', skll='b'");
  records->CancelUpdate();
}

// Whichever operation below fails, the table has a beginning of the added rows, and all of them if there was no error.
TEST_P(Batches, KeepABeginningOfTheRowsWhateverFails) {
  const std::string all = "ABCDEFGHIJKL";
  for (const bool forGood : {false, true}) {
    for (std::int64_t operation = 1;; ++operation) {
      connection.Execute("delete from people");
      below.Restart();
      forGood ? below.FailFrom(operation) : below.FailAt(operation);
      bool wasTold = false;
      try {
        const auto records = Opened("people");
        for (const char code : all) Add(*records, {code});
        records->Close();
      } catch (const Error& error) {
        wasTold = true;
        EXPECT_EQ(error.Number(), -2147467259);
      }
      below.FailAt(0);
      const std::string codes = Codes();
      EXPECT_TRUE(all.starts_with(codes)) << codes << " at operation " << operation;
      EXPECT_TRUE(wasTold || codes == all) << codes << " at operation " << operation;
      if (!below.HasFailed()) break;
      ASSERT_LT(operation, 200);
    }
  }
}

TEST_P(Batches, WaitForALockOnceAndNotForEachRow) {
  connection.CommandTimeout(1);
  const auto records = Opened("people");
  Add(*records, "A");
  records->Update();
  const auto holder = base->GetDriver().Open(ConnectionText(base->ConnectionText()));
  holder->Begin();
  {
    const auto statement = holder->Prepare(GetParam().lockStatement);
    while (statement->Step()) continue;
  }
  const auto start = std::chrono::steady_clock::now();
  const Error error = Raised([&] {
    for (const char* code : {"B", "C", "D", "E"}) Add(*records, code);
    records->Update();
  });
  EXPECT_EQ(error.Number(), -2147217871);
  EXPECT_EQ(error.DetailOf("key"), "code='B'");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(3500));
  holder->Rollback();
  records->CancelUpdate();
  records->Close();
  EXPECT_EQ(Codes(), "A");
  holder->Close();
}

}  // namespace
}  // namespace qmx::test
