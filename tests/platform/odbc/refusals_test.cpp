// What a server refuses, and how that reads.
#include <chrono>
#include <thread>

#include "platform/odbc/connection.h"
#include "platform/odbc/connection_string.h"
#include "tests/platform/database/record_set_test.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class AServerRefuses : public RecordSetTest {
 protected:
  AServerRefuses() : another(base->ConnectionText()) { CreatePeople(); }

  bool IsPostgresql() const { return GetParam().name == "PostgreSQL"; }

  OdbcConnection another;  // of another program
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(AServerRefuses);
INSTANTIATE_TEST_SUITE_P(Over, AServerRefuses, testing::ValuesIn(ServersUnderTest()), DriverName);

class ATableOfAServer : public AServerRefuses {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ATableOfAServer);
INSTANTIATE_TEST_SUITE_P(Over, ATableOfAServer, testing::ValuesIn(ServersUnderTest()), DriverName);

class MariaDbRefuses : public AServerRefuses {};  // what no other system can be brought to refuse here
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(MariaDbRefuses);
INSTANTIATE_TEST_SUITE_P(Over, MariaDbRefuses, testing::ValuesIn(DriversUnderTest([](const DriverUnderTest& driver) {
                           return driver.name == "MariaDB";
                         })),
                         DriverName);

TEST_P(AServerRefuses, ALockThatIsHeldLongerThanTheTimeOut) {
  AddPerson("A", "Ann");
  another.Begin();
  another.Run("update people set name='Eve'");
  connection.CommandTimeout(1);
  const auto start = std::chrono::steady_clock::now();
  const Error error = Raised([&] { connection.Execute("delete from people"); });
  const auto waited = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(error.Number(), -2147217871);
  EXPECT_THAT(error.Description(), HasSubstr("where somebody else holds a lock, let that be released"));
  EXPECT_GE(waited, std::chrono::milliseconds(900));
  EXPECT_LT(waited, std::chrono::seconds(10));
  another.Commit();
  EXPECT_EQ(connection.Execute("delete from people"), 1);  // the connection is as good as before
}

TEST_P(AServerRefuses, AStatementThatTakesLongerThanTheTimeOut) {
  connection.CommandTimeout(1);
  const Error error = Raised([&] {
    connection.Execute(IsPostgresql() ? "insert into people (code) select pg_sleep(20)::text"
                                      : "insert into people (code) select sleep(20) from people p");
    if (!IsPostgresql()) {  // an empty table is not slept over
      connection.Execute("insert into people (code) values ('A')");
      connection.Execute("update people set name='x' where sleep(20)=1");
    }
  });
  EXPECT_EQ(error.Number(), -2147217871);
}

TEST_P(AServerRefuses, AUserWithoutTheRightToDelete) {
  const std::string user = "clerk_" + connection.defaultdatabase();
  if (IsPostgresql()) {
    another.Run("create role " + user + " login password 'clerk'");
    another.Run("grant select, insert, update on people to " + user);
  } else {
    another.Run("create user " + user + "@'127.0.0.1' identified by 'clerk'");
    another.Run("grant select, insert, update on people to " + user + "@'127.0.0.1'");
  }
  AddPerson("A", "Ann");
  {
    Connection clerk({&driver}, nullptr);
    clerk.Open(WithOdbcKeyword(WithOdbcKeyword(base->ConnectionText(), "UID", user), "PWD", "clerk"), "", "");
    clerk.Execute("update people set name='Anna'");
    const Error error = Raised([&] { clerk.Execute("delete from people"); });
    EXPECT_EQ(error.Number(), 70);
    EXPECT_THAT(error.Description(), HasSubstr("denied"));
    EXPECT_THAT(error.Description(), HasSubstr("people"));
    EXPECT_THAT(error.Description(), HasSubstr("Grant the missing privileges to the user"));
  }
  EXPECT_THAT(Rows("select code, name from people"), ElementsAre("A|Anna"));
  another.Run(IsPostgresql() ? "drop owned by " + user : "drop user " + user + "@'127.0.0.1'");
  if (IsPostgresql()) another.Run("drop role " + user);
}

TEST_P(AServerRefuses, ChangesInAReadOnlyTransaction) {
  connection.Execute(IsPostgresql() ? "set default_transaction_read_only = on" : "set session transaction read only");
  const Error error = Raised([&] { AddPerson("A", "Ann"); });
  EXPECT_EQ(error.Number(), 70);
  EXPECT_THAT(error.Description(), HasSubstr("25006"));
  EXPECT_THAT(error.Description(), HasSubstr("The database is read-only; make it writable"));
}

TEST_P(AServerRefuses, AValueThatIsLongerThanItsColumn) {
  const auto records = OpenedTable("people");
  records->AddNew();
  records->Fields("code") = "a code of more than twenty letters";
  const Error error = Raised([&] { records->Update(); });
  EXPECT_EQ(error.Number(), -2147217900);
  EXPECT_THAT(error.Description(), HasSubstr("Widen the column"));
  EXPECT_EQ(error.DetailOf("table"), "people");
  EXPECT_EQ(error.DetailOf("key"), "code='a code of more than twenty letters'");
  records->CancelUpdate();
  EXPECT_THAT(Rows("select * from people"), ElementsAre());
}

// MariaDB's driver reports this as a success with a warning.
TEST_P(AServerRefuses, ADateInANumbersPlaceAlsoAsAParameter) {
  const auto session = base->GetDriver().Open(ConnectionText(base->ConnectionText()));
  {
    const Variant date("2026-01-31");
    const auto insert = session->Prepare("insert into people (code,floor) values ('A',?)");
    insert->Bind(0, date);
    EXPECT_EQ(Raised([&] { insert->Step(); }).Number(), 13);
  }
  session->Close();
  EXPECT_THAT(Rows("select * from people"), ElementsAre());
}

TEST_P(MariaDbRefuses, ATableThatIsFull) {
  connection.Execute("set session max_heap_table_size = 16384");
  connection.Execute("create table small (body varchar(200)) engine=memory");
  const auto records = OpenedTable("small");
  const Error error = Raised([&] {
    for (int row = 0; row < 10000; ++row) {
      records->AddNew();
      records->Fields("body") = "x";
      records->Update();
    }
  });
  EXPECT_EQ(error.Number(), 61);
  EXPECT_THAT(error.Description(), HasSubstr("free disk space"));
}

TEST_P(AServerRefuses, EveryStatementOnceTheConnectionIsCut) {
  const auto records = OpenedTable("people");
  records->AddNew();
  records->Fields("code") = "A";
  records->Update();
  const std::string id =
      Opened(IsPostgresql() ? "select pg_backend_pid()" : "select connection_id()")->Fields(0).Value().ToText();
  another.Run(IsPostgresql() ? "select pg_terminate_backend(" + id + ")" : "kill connection " + id);
  const std::string sessions = IsPostgresql() ? "select count(*) from pg_stat_activity where pid = " + id
                                              : "select count(*) from information_schema.processlist where id = " + id;
  while (another.AskText(sessions) != "0") std::this_thread::sleep_for(std::chrono::milliseconds(2));
  records->AddNew();
  records->Fields("code") = "B";
  const Error error = Raised([&] { records->Update(); });
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_THAT(error.Description(), HasSubstr("The connection to the server is lost"));
  records->CancelUpdate();
  const Error later = Raised([&] { connection.Execute("delete from people"); });
  EXPECT_EQ(later.Number(), -2147467259);
  EXPECT_THAT(later.Description(), HasSubstr("The connection to the server is lost"));
  EXPECT_THAT(Rows("select code from people"), ElementsAre("A"));
}

TEST_P(ATableOfAServer, IsAskedForItsKeyOnce) {
  driver.Restart();
  for (const char* code : {"A", "B", "C"}) {
    const auto records = OpenedTable("people");
    records->AddNew();
    records->Fields("code") = code;
    records->Close();
    const auto found = Opened(SqlText("select * from people where code='").Value(code).Append("'"));
    found->Fields("name") = "x";
    found->Update();
  }
  EXPECT_EQ(driver.CountOf("Describe"), 1);
}

}  // namespace
}  // namespace qmx::test
