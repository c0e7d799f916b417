#include "platform/trace/database_trace.h"

#include <gmock/gmock.h>

#include "platform/database.h"
#include "platform/json_line.h"
#include "platform/sqlite/driver.h"
#include "platform/trace/trace.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

class TracedDatabase : public testing::Test {
 protected:
  std::string Text() { return ReadFile(folder / "trace"); }

  TempFolder folder;
  Trace trace{folder / "trace"};
  DatabaseTrace observer{trace};
  SqliteDriver driver;
  Database database{{&driver}, &observer};
};

constexpr const char* kAfterOpening =
    R"~({"kind":"connection","op":"CommandTimeout","value":150}
{"kind":"connection","op":"Execute","sql":"create table skills (code text primary key, since datetime, rate double)","affected":0}
{"kind":"recordset","op":"Open","recordset":1,"source":"skills","cursor":1,"lock":3,"options":2}
{"kind":"recordset","op":"AddNew","recordset":1}
{"kind":"recordset","op":"Set","recordset":1,"column":"code","value":"WLD"}
{"kind":"recordset","op":"Set","recordset":1,"column":"since","value":{"date":"2026-11-20"}}
{"kind":"recordset","op":"Set","recordset":1,"column":"rate","value":null}
{"kind":"recordset","op":"Update","recordset":1}
{"kind":"recordset","op":"Close","recordset":1}
{"kind":"recordset","op":"MoveNext","recordset":1,"error":{"number":3704,"source":"ADODB.Recordset","description":"The record set is closed."}}
{"kind":"connection","op":"Execute","sql":"delete from skills","affected":1}
{"kind":"connection","op":"Close"}
)~";

TEST_F(TracedDatabase, StandsInTheTraceCallByCall) {
  const std::string file = folder / "local.db";
  const auto connection = database.CreateConnection("ADODB.Connection");
  connection->Open("Provider=SQLite;Mode=Create;Data Source=" + file, "", "");
  connection->CommandTimeout(150);
  connection->Execute("create table skills (code text primary key, since datetime, rate double)");
  const auto rows = database.CreateRecordset("ADODB.Recordset");
  rows->Open("skills", *connection, 1, 3, 2);
  rows->AddNew();
  rows->Fields("code") = "WLD";
  rows->Fields("since") = DateTime::FromDate(2026, 11, 20);
  rows->Fields("rate") = Variant::Null();
  rows->Update();
  rows->Close();
  EXPECT_EQ(Raised([&] { rows->MoveNext(); }).Number(), 3704);
  connection->Execute("delete from skills");
  connection->Close();

  const std::string opened = JsonLine::Object()
                                 .Add("kind", "connection")
                                 .Add("op", "Open")
                                 .Add("text", "Provider=SQLite;Mode=Create;Data Source=" + file)
                                 .Text();
  EXPECT_EQ(Text(), opened + "\n" + kAfterOpening);
}

TEST_F(TracedDatabase, ShowsEveryFieldOfEveryCall) {
  const Error error(5, "Database", "Refused.");
  observer.ConnectionOpened("DSN=x;PWD=***", &error);
  observer.DefaultDatabaseSet("qmx", nullptr);
  observer.Executed("delete from a", 3, &error);
  observer.CommandTimeoutSet(-1, &error);
  observer.ConnectionClosed(0, &error);
  observer.RecordsetOpened(7, "select 1", 1, 3, 1, 12, nullptr);
  observer.RecordsetOpened(7, "select 1", 1, 3, 1, 12, &error);
  observer.ColumnSet(7, "code", "a", &error);
  observer.RecordsetCalled(7, "CancelUpdate", nullptr);
  const std::string expected =
      R"({"kind":"connection","op":"Open","text":"DSN=x;PWD=***","error":{"number":5,"source":"Database","description":"Refused."}}
{"kind":"connection","op":"defaultdatabase","value":"qmx"}
{"kind":"connection","op":"Execute","sql":"delete from a","error":{"number":5,"source":"Database","description":"Refused."}}
{"kind":"connection","op":"CommandTimeout","value":-1,"error":{"number":5,"source":"Database","description":"Refused."}}
{"kind":"connection","op":"Close","error":{"number":5,"source":"Database","description":"Refused."}}
{"kind":"recordset","op":"Open","recordset":7,"source":"select 1","cursor":1,"lock":3,"options":1,"rows":12}
{"kind":"recordset","op":"Open","recordset":7,"source":"select 1","cursor":1,"lock":3,"options":1,"error":{"number":5,"source":"Database","description":"Refused."}}
{"kind":"recordset","op":"Set","recordset":7,"column":"code","value":"a","error":{"number":5,"source":"Database","description":"Refused."}}
{"kind":"recordset","op":"CancelUpdate","recordset":7}
)";
  EXPECT_EQ(Text(), expected);
}

TEST_F(TracedDatabase, NumbersRecordSetsInTheOrderInWhichTheyWereMade) {
  EXPECT_EQ(observer.NextRecordset(), 1);
  EXPECT_EQ(observer.NextRecordset(), 2);
}

}  // namespace
}  // namespace qmx::test
