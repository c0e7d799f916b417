#include "platform/database_observer.h"
#include "tests/platform/database/record_set_test.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;

// Records its notifications, one line per call. A failed call's line ends in "!" and the error's number.
class Listener : public DatabaseObserver {
 public:
  void ConnectionOpened(std::string_view maskedText, const Error* error) override {
    Note("connect " + std::string(maskedText), error);
  }
  void DefaultDatabaseSet(std::string_view value, const Error* error) override {
    Note("default " + std::string(value), error);
  }
  void Executed(std::string_view statement, std::int64_t affected, const Error* error) override {
    Note("execute " + std::string(statement) + " " + std::to_string(affected), error);
  }
  void CommandTimeoutSet(int seconds, const Error* error) override {
    Note("timeout " + std::to_string(seconds), error);
  }
  void ConnectionClosed(std::int64_t, const Error* error) override { Note("disconnect", error); }
  void RecordsetOpened(int recordset, std::string_view source, int cursorType, int lockType, int options,
                       std::optional<std::int64_t> rows, const Error* error) override {
    Note(std::to_string(recordset) + " open " + std::string(source) + " " + std::to_string(cursorType) +
             std::to_string(lockType) + std::to_string(options) + " rows " + (rows ? std::to_string(*rows) : "unread"),
         error);
  }
  void ColumnSet(int recordset, std::string_view column, const Variant& value, const Error* error) override {
    Note(std::to_string(recordset) + " " + std::string(column) + "=" + value.ToText(), error);
  }
  void RecordsetCalled(int recordset, std::string_view operation, const Error* error) override {
    Note(std::to_string(recordset) + " " + std::string(operation), error);
  }
  int NextRecordset() override { return ++recordsets_; }
  bool HearsOfColumns() const override { return true; }

  void RowSaved(std::string_view table) override {
    if (hearsOfRows) Note("saved in " + std::string(table), nullptr);
  }

  bool hearsOfRows = false;
  std::vector<std::string> notes;

 private:
  void Note(std::string note, const Error* error) {
    if (error) note += "!" + std::to_string(error->Number());
    notes.push_back(std::move(note));
  }
  int recordsets_ = 0;
};

class AnObserver : public testing::TestWithParam<DriverUnderTest> {
 protected:
  AnObserver() : base(GetParam().make()), connection({&base->GetDriver()}, &listener) {
    connection.Open(base->ConnectionText(), "", "");
    connection.Execute("create table people (code varchar(20) not null primary key, floor smallint)");
    listener.notes.clear();
  }
  Listener listener;
  std::unique_ptr<TestDatabase> base;
  Connection connection;
};
INSTANTIATE_TEST_SUITE_P(Over, AnObserver, testing::ValuesIn(DriversUnderTest()), DriverName);

TEST_P(AnObserver, IsNotifiedOfEveryCallOfARecordsetInOrder) {
  Recordset records(&listener);
  records.Open("people", connection, kCursorKeyset, kLockOptimistic, kCommandTable);
  records.AddNew();
  records.Fields("code") = "A";
  records.Fields("FLOOR") = "4";
  records.Update();
  records.Fields("floor") = 5;
  records.CancelUpdate();
  records.MoveFirst();
  records.MoveNext();
  records.Close();
  EXPECT_THAT(listener.notes,
              ElementsAre("1 open people 132 rows unread", "1 AddNew", "1 code=A", "1 floor=4", "1 Update", "1 floor=5",
                          "1 CancelUpdate", "1 MoveFirst", "1 MoveNext", "1 Close"));
}

TEST_P(AnObserver, IsNotifiedOfTheNumberOfRowsRead) {
  Recordset first(&listener);
  Recordset second(&listener);
  connection.Execute("insert into people (code) values ('A')");
  second.Open("select * from people", connection, kCursorKeyset, kLockOptimistic, kCommandText);
  EXPECT_THAT(listener.notes, ElementsAre("execute insert into people (code) values ('A') 1",
                                          "2 open select * from people 131 rows 1"));
}

TEST_P(AnObserver, IsNotifiedOfFailuresWithTheirErrors) {
  Recordset records(&listener);
  Raised([&] { records.AddNew(); });
  Raised([&] { records.Open("nobody", connection, kCursorKeyset, kLockOptimistic, kCommandTable); });
  records.Open("people", connection, kCursorKeyset, kLockOptimistic, kCommandTable);
  records.AddNew();
  Raised([&] { records.Fields("floor") = "top"; });
  Raised([&] { records.Update(); });
  Raised([&] { connection.Execute("selekt"); });
  EXPECT_THAT(listener.notes,
              ElementsAre("1 AddNew!3704", "1 open nobody 132 rows unread!-2147217865", "1 open people 132 rows unread",
                          "1 AddNew", "1 floor=top!13", "1 Update!-2147217873", "execute selekt 0!-2147217900"));
}

TEST_P(AnObserver, IsNotifiedOfEverySavedRowBeforeTheCallEnds) {
  listener.hearsOfRows = true;
  Recordset records(&listener);
  records.Open("People", connection, kCursorKeyset, kLockOptimistic, kCommandTable);
  records.AddNew();
  records.Fields("code") = "A";
  records.AddNew();
  records.Fields("code") = "A";
  Raised([&] { records.Update(); });
  records.CancelUpdate();
  records.Update();
  records.AddNew();
  records.Fields("code") = "B";
  records.Close();
  EXPECT_THAT(listener.notes, ElementsAre("1 open People 132 rows unread", "1 AddNew", "1 code=A", "saved in People",
                                          "1 AddNew", "1 code=A", "1 Update!-2147217873", "1 CancelUpdate", "1 Update",
                                          "1 AddNew", "1 code=B", "saved in People", "1 Close"));
}

TEST_P(AnObserver, IsNotifiedOfTheSameAsAllOthers) {
  Listener second;
  DatabaseObserver indifferent;
  const DatabaseObservers all(std::vector<DatabaseObserver*>{&indifferent, &listener, &second});
  Connection with({&base->GetDriver()}, all);
  with.Open(base->ConnectionText(), "", "");
  Recordset records(all);
  records.Open("people", with, kCursorKeyset, kLockOptimistic, kCommandTable);
  records.AddNew();
  records.Fields("code") = "A";
  records.CancelUpdate();
  Raised([&] { records.MoveFirst(); });
  records.Close();
  with.CommandTimeout(5);
  with.Execute("delete from people");
  with.Close();
  EXPECT_EQ(listener.notes, second.notes);
  EXPECT_THAT(std::vector(second.notes.begin() + 1, second.notes.end()),
              ElementsAre("1 open people 132 rows unread", "1 AddNew", "1 code=A", "1 CancelUpdate", "1 MoveFirst!3021",
                          "1 Close", "timeout 5", "execute delete from people 0", "disconnect"));
}

TEST_P(AnObserver, IsNotifiedOfTheCallsOfAConnection) {
  connection.CommandTimeout(150);
  connection.defaultdatabase(connection.defaultdatabase());
  connection.Close();
  Raised([&] { connection.Close(); });
  ASSERT_EQ(listener.notes.size(), 4U);
  EXPECT_EQ(listener.notes[0], "timeout 150");
  EXPECT_THAT(listener.notes[1], testing::StartsWith("default "));
  EXPECT_EQ(listener.notes[2], "disconnect");
  EXPECT_EQ(listener.notes[3], "disconnect!3704");
}

TEST(ObservedConnections, NeverShowAPassword) {
  Listener listener;
  Connection connection({}, &listener);
  Raised([&] { connection.Open("DSN=x;PWD='s;cret'", "", ""); });
  Raised([&] { connection.Open("DSN=x", "ann", "s;cret"); });
  Raised([&] { connection.Open("DSN=x;PWD='s;cret", "", ""); });
  EXPECT_THAT(listener.notes, ElementsAre("connect DSN=x;PWD=***!5", "connect DSN=x;UID=ann;PWD=***!5", "connect !5"));
}

}  // namespace
}  // namespace qmx::test
