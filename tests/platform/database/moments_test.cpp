// Moments in an SQLite file, through SQLite's own driver and through ODBC: they are stored and compared in the form of
// SQLite's datetime(), "2026-11-05 00:00:00". Files of older releases have midnights as "2026-11-05".
#include "tests/platform/database/record_set_test.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;

const DateTime kMidnight = DateTime::FromDate(2026, 11, 5);
const DateTime kAfternoon = kMidnight.PlusTime(14, 5, 0);

class SqliteMoments : public RecordSetTest {
 protected:
  SqliteMoments() {
    connection.Execute(
        "create table shifts (code varchar(9) not null, start datetime not null, ending datetime, note varchar(40), "
        "primary key (code, start))");
  }

  void Add(const char* code, const Variant& start, const Variant& ending = Variant::Null()) {
    const auto records = OpenedTable("shifts");
    records->AddNew();
    records->Fields("code") = code;
    records->Fields("start") = start;
    records->Fields("ending") = ending;
    records->Close();
  }

  // As an older release did.
  void AddText(const std::string& code, const std::string& start, const std::string& ending) {
    connection.Execute("insert into shifts (code, start, ending) values ('" + code + "','" + start + "','" + ending +
                       "')");
  }

  // What the file holds, letter by letter.
  std::vector<std::string> Stored() {
    return Rows("select code||' '||start||' to '||ifnull(ending,'null')||ifnull(', '||note,'') from shifts order by 1");
  }

  void Note(const SqlText& query, const char* note) {
    const auto records = Opened(query);
    records->Fields("note") = note;
    records->Update();
    records->Close();
  }
};
INSTANTIATE_TEST_SUITE_P(Over, SqliteMoments, testing::ValuesIn(DriversUnderTest([](const auto& driver) {
                           return driver.name.starts_with("SQLite");
                         })),
                         DriverName);

TEST_P(SqliteMoments, AreStoredWithTheTimeOfDayAtMidnightToo) {
  Add("A", kMidnight, kAfternoon);
  Add("B", kAfternoon, kMidnight);
  EXPECT_THAT(Stored(), ElementsAre("A 2026-11-05 00:00:00 to 2026-11-05 14:05:00",
                                    "B 2026-11-05 14:05:00 to 2026-11-05 00:00:00"));
}

TEST_P(SqliteMoments, AreStoredInTheSameFormIfATextIsAssigned) {
  Add("A", "2026-11-05", "2026-11-5 8:00");
  Add("B", "2026-11-05 00:00:00", "2026-11-05T14:05:00");
  EXPECT_THAT(Stored(), ElementsAre("A 2026-11-05 00:00:00 to 2026-11-05 08:00:00",
                                    "B 2026-11-05 00:00:00 to 2026-11-05 14:05:00"));
}

TEST_P(SqliteMoments, AreStoredInTheSameFormIfARowIsChanged) {
  AddText("A", "2026-11-05", "2026-11-05 14:05:00");
  const auto records = Opened("select * from shifts");
  records->Fields("ending") = kMidnight.PlusDays(1);
  records->Update();
  records->Close();
  EXPECT_THAT(Stored(), ElementsAre("A 2026-11-05 to 2026-11-06 00:00:00"));
}

TEST_P(SqliteMoments, StayTextsInAColumnThatIsDeclaredAsOne) {
  connection.Execute("create table notes (code varchar(9) primary key, said varchar(40))");
  const auto records = OpenedTable("notes");
  records->AddNew();
  records->Fields("code") = "A";
  records->Fields("said") = kMidnight;
  records->Close();
  EXPECT_THAT(Rows("select said from notes"), ElementsAre("2026-11-05"));
}

TEST_P(SqliteMoments, AreReadInBothForms) {
  AddText("A", "2026-11-05", "2026-11-05 00:00:00");
  const auto records = Opened("select * from shifts");
  EXPECT_EQ(records->Fields("start").Value(), Variant(kMidnight));
  EXPECT_EQ(records->Fields("ending").Value(), Variant(kMidnight));
}

TEST_P(SqliteMoments, FindTheirRowByAMidnightInItsKey) {
  Add("A", kMidnight);
  Add("A", kAfternoon);
  Note("select * from shifts where start = '2026-11-05 00:00:00'", "early");
  Note("select * from shifts where start = '2026-11-05 14:05:00'", "late");
  EXPECT_THAT(Stored(), ElementsAre("A 2026-11-05 00:00:00 to null, early", "A 2026-11-05 14:05:00 to null, late"));
}

TEST_P(SqliteMoments, FindARowOfAnOlderReleaseByAMidnightInItsKey) {
  AddText("A", "2026-11-05", "2026-11-06");
  AddText("A", "2026-11-05 14:05:00", "2026-11-06");
  Note("select * from shifts where start = '2026-11-05'", "early");
  Note("select * from shifts where start = '2026-11-05 14:05:00'", "late");
  EXPECT_THAT(Stored(), ElementsAre("A 2026-11-05 14:05:00 to 2026-11-06, late", "A 2026-11-05 to 2026-11-06, early"));
}

TEST_P(SqliteMoments, FindARowOfATableWithoutAKeyByAMidnightInEitherForm) {
  connection.Execute("create table loose (start datetime, ending datetime, note varchar(40))");
  connection.Execute("insert into loose (start, ending) values ('2026-11-05', '2026-11-06 00:00:00')");
  Note("select * from loose", "found");
  EXPECT_THAT(Rows("select start||' to '||ending||' '||note from loose"),
              ElementsAre("2026-11-05 to 2026-11-06 00:00:00 found"));
}

TEST_P(SqliteMoments, AreReadAgainByAMidnightInTheirKeyInEitherForm) {
  connection.Execute("create table counted (start datetime not null primary key, visits integer default 7)");
  const auto records = OpenedTable("counted");
  records->AddNew();
  records->Fields("start") = kMidnight;
  records->Update();
  EXPECT_EQ(records->Fields("visits").Value(), Variant(7));
}

SqlText StartsAt(const char* statement, const Variant& moment) {
  return SqlText(statement).Append(" where code='A' and start='").Moment(moment).Append("'");
}

TEST_P(SqliteMoments, AreFoundByAStatementThatHoldsThem) {
  Add("A", kMidnight);
  Add("A", kAfternoon);
  const char* kSelect = "select * from shifts";
  EXPECT_EQ(Opened(StartsAt(kSelect, kMidnight))->recordcount(), 1);
  EXPECT_EQ(Opened(StartsAt(kSelect, kAfternoon))->recordcount(), 1);
  EXPECT_EQ(Opened(StartsAt(kSelect, "2026-11-05"))->recordcount(), 1);
  EXPECT_EQ(Opened(StartsAt(kSelect, "2026-11-5 0:00"))->recordcount(), 1);
  EXPECT_EQ(Opened(StartsAt(kSelect, "2026-11-05 00:00:00"))->recordcount(), 1);
  EXPECT_EQ(Opened(StartsAt(kSelect, "2026-11-06"))->recordcount(), 0);
  EXPECT_EQ(Opened(StartsAt(kSelect, "next week"))->recordcount(), 0);
}

TEST_P(SqliteMoments, OfAnOlderReleaseAreFoundByAStatementThatHoldsThem) {
  AddText("A", "2026-11-05", "2026-11-06");
  AddText("A", "2026-11-05 14:05:00", "2026-11-06");
  Note(StartsAt("select * from shifts", kMidnight), "early");
  Note(StartsAt("select * from shifts", "2026-11-05 14:05:00"), "late");
  EXPECT_THAT(Stored(), ElementsAre("A 2026-11-05 14:05:00 to 2026-11-06, late", "A 2026-11-05 to 2026-11-06, early"));
  EXPECT_EQ(connection.Execute(StartsAt("delete from shifts", "2026-11-05")), 1);
  EXPECT_THAT(Stored(), ElementsAre("A 2026-11-05 14:05:00 to 2026-11-06, late"));
}

TEST_P(SqliteMoments, BoundAQueryAtMidnightInEitherForm) {
  Add("A", kMidnight);
  Add("B", kMidnight.PlusTime(0, 0, 1));
  AddText("C", "2026-11-05", "2026-11-06");
  const auto found = [&](const char* comparison) {
    return Rows(SqlText("select code from shifts where start ")
                    .Append(comparison)
                    .Append(" '")
                    .Value(kMidnight)
                    .Append("' order by code"));
  };
  EXPECT_THAT(found(">"), ElementsAre("B"));
  EXPECT_THAT(found("<="), ElementsAre("A", "C"));
}

TEST_P(SqliteMoments, OfAnInsertAreStoredInTheSameForm) {
  connection.Execute(SqlText("insert into shifts (code, start, ending) values ('A','")
                         .Value(kMidnight)
                         .Append("','")
                         .Value(kAfternoon)
                         .Append("')"));
  EXPECT_THAT(Stored(), ElementsAre("A 2026-11-05 00:00:00 to 2026-11-05 14:05:00"));
}

// A value that is a part of a literal has no parameter.
TEST_P(SqliteMoments, OfAStatementThatIsSentAsItIsHaveTheSameForm) {
  connection.Execute(SqlText("insert into shifts (code, start, note) values ('A','")
                         .Value(kMidnight)
                         .Append("','two")
                         .Value("words")
                         .Append("')"));
  EXPECT_THAT(Stored(), ElementsAre("A 2026-11-05 00:00:00 to null, twowords"));
}

TEST_P(SqliteMoments, CompareAsSqlitesOwnMomentsDo) {
  Add("A", kMidnight.PlusDays(-1).PlusTime(23, 59, 59));
  Add("B", kMidnight);
  Add("C", kAfternoon);
  EXPECT_THAT(Rows("select code from shifts where start >= datetime('2026-11-05 17:00:00', 'start of day') order by 1"),
              ElementsAre("B", "C"));
  EXPECT_THAT(Rows("select code from shifts where start = datetime('2026-11-05')"), ElementsAre("B"));
}

TEST_P(SqliteMoments, JoinWithSqlitesOwnMoments) {
  connection.Execute("create table days (day text)");
  connection.Execute("insert into days values ('2026-11-05'), ('2026-11-06')");
  Add("A", kMidnight);
  Add("B", kAfternoon);
  EXPECT_THAT(Rows("select code||' '||day from shifts join days on start = datetime(day)"),
              ElementsAre("A 2026-11-05"));
}

}  // namespace
}  // namespace qmx::test
