// Work in one transaction: others see all of it or nothing, whatever fails in it, and a refused row is named all the
// same.
#include <algorithm>

#include "tests/platform/database/record_set_test.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr int kRows = 300;  // several batches on every system

class UnitsOfWork : public RecordSetTest {
 protected:
  UnitsOfWork() {
    CreatePeople();
    for (const char* code : {"A", "B"}) AddPerson(code, "old");
    connection.PrepareAtomic({"people"});
  }

  std::vector<std::string> People() { return Rows("select code, name from people order by code"); }

  // Adds rows as a full copy does: each AddNew saves the row before it.
  void AddPeople(Recordset& records, int count, const char* bad = "") {
    for (int number = 0; number < count; ++number) {
      records.AddNew();
      records.Fields("code") = number == 250 && *bad ? std::string(bad) : "P" + std::to_string(1000 + number);
      records.Fields("name") = "new";
    }
    records.Update();
  }

  // Runs a call and ignores its error.
  template <typename Call>
  void Trapping(Call&& call) {
    EXPECT_THROW(call(), Error);
  }
};
INSTANTIATE_TEST_SUITE_P(Over, UnitsOfWork, testing::ValuesIn(DriversUnderTest()), DriverName);

TEST_P(UnitsOfWork, ShowOthersTheOldRowsUntilTheirEndAndThenTheNewOnes) {
  connection.Atomically([&] {
    connection.Execute("delete from people where 1=1");
    const auto records = OpenedTable("people");
    AddPeople(*records, kRows);
    records->Close();
    if (!connection.LocksWholeDatabase() || GetParam().name != "SQLiteOverOdbc") {
      EXPECT_THAT(People(), ElementsAre("A|old", "B|old"));
    }
  });
  EXPECT_EQ(People().size(), std::size_t{kRows});
}

TEST_P(UnitsOfWork, SeeTheirOwnRows) {
  connection.Atomically([&] {
    const auto records = OpenedTable("people");
    AddPeople(*records, kRows);
    EXPECT_EQ(records->recordcount(), kRows + 2);
    records->Close();
    EXPECT_EQ(Opened("select * from people where name = 'new'")->recordcount(), kRows);
  });
}

TEST_P(UnitsOfWork, SaveNothingWhenTheWorkRaises) {
  const Error error = Raised([&] {
    connection.Atomically([&] {
      connection.Execute("delete from people where 1=1");
      throw Error(7000, "Orvan", "The ERP failed.");
    });
  });
  EXPECT_EQ(error.Number(), 7000);
  EXPECT_THAT(People(), ElementsAre("A|old", "B|old"));
  AddPerson("C", "after");
  EXPECT_THAT(People(), ElementsAre("A|old", "B|old", "C|after"));
}

TEST_P(UnitsOfWork, SaveNothingAndRaiseTheFirstFailureThatTheWorkHandled) {
  const Error error = Raised([&] {
    connection.Atomically([&] {
      connection.Execute("delete from people where code = 'A'");
      Trapping([&] { connection.Execute("insert into people (code) values ('B')"); });
      Trapping([&] { connection.Execute("delete from nowhere"); });
    });
  });
  EXPECT_EQ(error.Number(), errors::kIntegrity);
  EXPECT_THAT(error.DetailOf("statement"), HasSubstr("values ('B')"));
  EXPECT_THAT(People(), ElementsAre("A|old", "B|old"));
}

TEST_P(UnitsOfWork, SaveNothingWhereAColumnIsMissingAndTheWorkHandledIt) {
  const Error error = Raised([&] {
    connection.Atomically([&] {
      connection.Execute("delete from people where code = 'A'");
      const auto records = Opened("select * from people");
      Trapping([&] { records->Fields("lutm") = 1; });
    });
  });
  EXPECT_EQ(error.Number(), errors::kNoSuchColumn);
  EXPECT_THAT(People(), ElementsAre("A|old", "B|old"));
}

// SQLite ends the transaction then, and what followed would be saved by itself.
TEST_P(UnitsOfWork, SaveNothingWhereTheDatabaseEndedTheTransactionAndTheWorkGoesOn) {
  if (!GetParam().name.starts_with("SQLite")) return;
  const Error error = Raised([&] {
    connection.Atomically([&] {
      connection.Execute("delete from people where code = 'A'");
      Trapping([&] { connection.Execute("insert or rollback into people (code,name) values ('B','new')"); });
      Trapping([&] { AddPerson("C", "new"); });
      Trapping([&] { AddPeople(*OpenedTable("people"), kRows); });
    });
  });
  EXPECT_EQ(error.Number(), errors::kIntegrity);
  EXPECT_THAT(People(), ElementsAre("A|old", "B|old"));
}

TEST_P(UnitsOfWork, NameTheRowThatIsRefusedAmongMany) {
  const Error error = Raised([&] {
    connection.Atomically([&] {
      connection.Execute("delete from people where code = 'A'");
      const auto records = OpenedTable("people");
      AddPeople(*records, kRows, "B");
      records->Close();
    });
  });
  EXPECT_EQ(error.Number(), errors::kIntegrity);
  EXPECT_EQ(error.DetailOf("key"), "code='B'");
  EXPECT_EQ(error.DetailOf("table"), "people");
  EXPECT_THAT(People(), ElementsAre("A|old", "B|old"));
}

TEST_P(UnitsOfWork, CommitOnceHoweverManyGroupsAndRecordSetsTheyHave) {
  connection.Atomically([&] {
    driver.Restart();
    connection.Together([&] {
      for (int number = 0; number < 100; ++number) AddPerson(("G" + std::to_string(number)).c_str(), "new");
    });
    const auto records = Opened("select * from people where code = 'A'");
    records->Fields("name") = "changed";
    records->Close();
    EXPECT_EQ(driver.CountOf("Commit"), 0);
    EXPECT_EQ(driver.CountOf("Begin"), 0);
  });
  EXPECT_EQ(driver.CountOf("Commit"), 1);
  EXPECT_EQ(People().size(), std::size_t{102});
}

TEST_P(UnitsOfWork, ChangeRowsOfATableWithoutAKey) {
  connection.Execute("create table things (code varchar(20), name varchar(20))");
  connection.Execute("insert into things values ('A', 'old')");
  connection.Atomically([&] {
    const auto records = Opened("select * from things where code = 'A'");
    records->Fields("name") = "new";
    records->Update();
    records->Close();
  });
  EXPECT_THAT(Rows("select code, name from things"), ElementsAre("A|new"));

  connection.Execute("insert into things values ('B', 'same'), ('B', 'same')");
  const Error error = Raised([&] {
    connection.Atomically([&] {
      const auto records = Opened("select * from things where code = 'B'");
      records->Fields("name") = "new";
      Trapping([&] { records->Update(); });
      records->CancelUpdate();
      records->Close();
    });
  });
  EXPECT_EQ(error.Number(), errors::kRowChanged);
  EXPECT_THAT(Rows("select code, name from things order by code"), ElementsAre("A|new", "B|same", "B|same"));
}

// The shared form has a text where the column is a number, which some systems refuse. The text itself they take.
TEST_P(UnitsOfWork, SendATextAsItStandsWhereItsSharedFormIsRefused) {
  connection.Execute("create table numbers (n integer, t varchar(10))");
  const SqlText insert = SqlText("insert into numbers (n, t) values (1 + '").Value("1").Append("', 'x')");
  const SqlText other = SqlText("insert into numbers (n, t) values (1 + '").Value("2").Append("', 'x')");
  for (const SqlText* text : {&insert, &other}) connection.Execute(*text);
  const std::vector<std::string> expected = Rows("select n, t from numbers order by n");
  connection.Execute("delete from numbers where 1=1");
  connection.Atomically([&] {
    for (const SqlText* text : {&insert, &other}) connection.Execute(*text);
  });
  EXPECT_EQ(Rows("select n, t from numbers order by n"), expected);
}

TEST_P(UnitsOfWork, SaveNothingWhoeverFailsAtWhicheverOperation) {
  for (const FaultKind kind : {FaultKind::Before, FaultKind::After, FaultKind::TakenBack}) {
    for (int operation = 1;; ++operation) {
      SCOPED_TRACE(NameOf(kind) + " at operation " + std::to_string(operation));
      ASSERT_LT(operation, 300);
      connection.Execute("delete from people where 1=1");
      AddPerson("A", "old");
      driver.Restart();
      driver.FailAs(kind);
      if (kind == FaultKind::TakenBack) driver.FailOnly("Commit");
      driver.FailAt(operation);
      bool raised = false;
      try {
        connection.Atomically([&] {
          connection.Execute("delete from people where 1=1");
          const auto records = Opened("select * from people where code = 'P1000'");
          AddPeople(*records, 3);
          records->Close();
        });
      } catch (const Error&) {
        raised = true;
      }
      const bool isLost = kind == FaultKind::After && driver.FirstFailed().ends_with(": Commit");
      driver.FailOnly("");
      driver.FailAt(0);
      if (!driver.HasFailed()) {
        EXPECT_FALSE(raised);
        break;
      }
      EXPECT_TRUE(raised);
      const std::vector<std::string> people = People();
      if (isLost) {  // the connection serves nothing any more
        EXPECT_THAT(people, testing::AnyOf(ElementsAre("A|old"), testing::SizeIs(3)));
        driver.Restart();
        connection.Close();
        connection.Open(base->ConnectionText(), "", "");
        connection.PrepareAtomic({"people"});
        continue;
      }
      EXPECT_THAT(people, ElementsAre("A|old"));
    }
    driver.Restart();
  }
}

TEST_P(UnitsOfWork, RaiseWhatTheDatabaseSaidWhereItRefusesTheCommit) {
  driver.FailAs(FaultKind::TakenBack);
  driver.FailOnly("Commit");
  driver.Restart();
  driver.FailAt(1);
  const Error error = Raised([&] { connection.Atomically([&] { AddPerson("C", "new"); }); });
  EXPECT_THAT(error.Description(), HasSubstr("Operation"));
  EXPECT_THAT(DescribeChain(error), Not(HasSubstr("It is not known")));
  EXPECT_THAT(People(), ElementsAre("A|old", "B|old"));
}

TEST_P(UnitsOfWork, SayThatTheOutcomeIsNotKnownWhereTheAnswerToTheCommitIsLost) {
  driver.FailAs(FaultKind::After);
  driver.FailOnly("Commit");
  driver.Restart();
  driver.FailAt(1);
  const Error error = Raised([&] { connection.Atomically([&] { AddPerson("C", "new"); }); });
  EXPECT_THAT(error.Description(), HasSubstr("It is not known whether the transaction was committed"));
  EXPECT_THAT(DescribeChain(error), HasSubstr("Faulty driver: Operation"));
}

TEST_P(UnitsOfWork, AreNotBegunWithinOneAnother) {
  const Error error = Raised([&] {
    connection.Atomically([&] {
      AddPerson("C", "new");
      connection.Atomically([] {});
    });
  });
  EXPECT_EQ(error.Number(), errors::kNotAllowedNow);
  EXPECT_THAT(People(), ElementsAre("A|old", "B|old"));
}

TEST_P(UnitsOfWork, SaveNothingWhenTheConnectionIsClosedInThem) {
  const Error error = Raised([&] {
    connection.Atomically([&] {
      AddPerson("C", "new");
      connection.Close();
    });
  });
  EXPECT_EQ(error.Number(), errors::kConnectionClosed);
  EXPECT_THAT(People(), ElementsAre("A|old", "B|old"));
}

TEST_P(UnitsOfWork, AreNotPreparedWhileARecordSetIsOpen) {
  const auto records = OpenedTable("people");
  EXPECT_EQ(Raised([&] { connection.PrepareAtomic({"people"}); }).Number(), errors::kNotAllowedNow);
  records->Close();
  connection.PrepareAtomic({"people"});
}

TEST_P(UnitsOfWork, NeedAnOpenConnection) {
  connection.Close();
  EXPECT_EQ(Raised([&] { connection.Atomically([] {}); }).Number(), errors::kClosed);
}

TEST_P(UnitsOfWork, AreRefusedForATableThatCannotRollBackAndNoneElse) {
  connection.PrepareAtomic({"people", "nowhere"});
  if (GetParam().name != "MariaDB") return;
  for (const char* engine : {"MyISAM", "Aria"}) {
    connection.Execute(std::string("create table ") + engine + " (n integer) engine=" + engine);
    const Error error = Raised([&] { connection.PrepareAtomic({"people", engine}); });
    EXPECT_EQ(error.Number(), errors::kNotAllowedNow);
    EXPECT_THAT(error.Description(), HasSubstr(std::string("The rows of the table ") + engine));
    EXPECT_EQ(error.DetailOf("table"), engine);
  }
}

TEST_P(UnitsOfWork, OfASystemThatLocksTheWholeDatabaseAreToldApart) {
  EXPECT_EQ(connection.LocksWholeDatabase(), GetParam().name.starts_with("SQLite"));
}

}  // namespace
}  // namespace qmx::test
