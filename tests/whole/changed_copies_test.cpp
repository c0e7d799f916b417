// What a changed copy brings, what it does not, and where that differs from a full copy: every line of
// docs/changed-copies.md, shown once.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "schema/local_tables.h"
#include "tests/whole/company.h"
#include "tests/whole/local_copy.h"
#include "tests/whole/not_by_change.h"

namespace qmx::test::changed_copies {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class ChangedCopies : public testing::Test {
 protected:
  // Tables are copied in full once, and by change from then on.
  void CopyInFullAndThenByChange(const std::vector<std::string>& tables) {
    for (const std::string& table : tables) local_.Copy(table);
    local_.ByChange();
  }
  Rows Fresh(const std::string& table) {
    LocalCopy fresh(company_, clock_);
    if (table == "tcccp030") fresh.Copy("tsmdm140");
    fresh.Copy(table);
    return fresh.RowsOf(table);
  }
  // The statement that gives every record another value in every column but the key and those named.
  std::string ChangeAllRecords(const std::string& table, const std::string& except = "") {
    return company_.Value("select 'update " + table +
                          " set ' || group_concat('\"' || name || '\" = ' || case "
                          "when type <> 'TEXT' then '\"' || name || '\" + 1' "
                          "when \"notnull\" = 0 then 'coalesce(datetime(\"' || name || '\", ''+1 hour''), "
                          "''2026-12-24 18:00:00'')' "
                          "when name in ('stdt', 'endt') then 'date(\"' || name || '\", ''+1 day'')' "
                          "else '\"' || name || '\" || ''x''' end) from pragma_table_info('" +
                          table + "') where pk = 0 and name not in ('" + except + "')");
  }

  FakeClock clock_{At(20, 14, 5, 9)};
  Company company_;
  LocalCopy local_{company_, clock_};
};

// The columns in which rows differ from a fresh full copy, and the values that they hold.
std::map<std::string, std::set<std::string>> Columns(const std::string& table, const Rows& rows, const Rows& fresh) {
  std::map<std::string, std::set<std::string>> columns;
  for (const auto& [key, row] : rows)
    for (const auto& [column, value] : row)
      if (fresh.contains(key) && value != fresh.at(key).at(column)) columns[table + "." + column].insert(value);
  return columns;
}

TEST_F(ChangedCopies, CopyEveryColumnOfAChangedRecordExceptThoseListed) {
  CopyInFullAndThenByChange(CopiedTables());
  std::map<std::string, std::set<std::string>> missed;
  std::map<std::string, Rows> before;
  for (const std::string& table : CopiedTables()) {
    before[table] = local_.RowsOf(table);
    ASSERT_FALSE(before[table].empty()) << table;
    const std::string except = table == "tsmdm140" ? "ccal" : table == "tssoc200" ? "ofbp" : "";
    company_.Change(clock_.now, ChangeAllRecords(table, except));
  }
  local_.CopyAll();
  std::map<std::string, std::set<std::string>> expected;
  for (const ColumnNotByChange& known : kColumnsNotByChange) {
    std::set<std::string>& values = expected[std::string(known.table) + "." + known.column];
    if (known.fate == Fate::Emptied) values.insert(known.blank);
    if (known.fate == Fate::Left)
      for (const auto& [key, row] : before[known.table]) values.insert(row.at(known.column));
  }
  for (const std::string& table : CopiedTables()) {
    const Rows rows = local_.RowsOf(table);
    const Rows fresh = Fresh(table);
    EXPECT_EQ(rows.size(), fresh.size()) << table;
    for (const auto& [key, row] : rows) EXPECT_NE(row, before[table].at(key)) << table << ' ' << key;
    missed.merge(Columns(table, rows, fresh));
  }
  EXPECT_EQ(missed, expected);
}

TEST_F(ChangedCopies, ListTheEmployeeAgainAndSoCopyItsCalendar) {
  CopyInFullAndThenByChange({"tsmdm140"});
  company_.Change(clock_.now,
                  "update tsmdm140 set ccal = (select o.ccal from tsmdm140 o where o.ccal not in ('', tsmdm140.ccal))");
  local_.Copy("tsmdm140");
  EXPECT_THAT(Differences("tsmdm140", local_.RowsOf("tsmdm140"), Fresh("tsmdm140")), IsEmpty());
}

TEST_F(ChangedCopies, ListAnOrderAgainWhoseSoldToPartnerChanged) {
  CopyInFullAndThenByChange({"tssoc200"});
  company_.Change(clock_.now, "update tssoc200 set ofbp = ofbp || 'x', stna = stna || 'y', minu = minu + 1");
  local_.Copy("tssoc200");
  EXPECT_THAT(Differences("tssoc200", local_.RowsOf("tssoc200"), Fresh("tssoc200")), IsEmpty());
}

TEST_F(ChangedCopies, DeleteRecordsThatWereChangedAndThenDeleted) {
  CopyInFullAndThenByChange(CopiedTables());
  for (const std::string& table : CopiedTables()) {
    if (table == "tsmdm140") continue;  // the calendars need it
    company_.Change(clock_.now, ChangeAllRecords(table) + "; delete from " + table);
    local_.Copy(table);
    EXPECT_EQ(
        local_.Value("select count(*) from " + table + (table == "tcccp030" ? " where stdt >= '2026-09-21'" : "")), "0")
        << table;
  }
}

// A deletion is applied when a period reaches it. Until then a record that was changed before it has its key alone.
TEST_F(ChangedCopies, BlankARecordWhoseDeletionIsNotInThePeriodYet) {
  CopyInFullAndThenByChange({"tsmdm030"});
  company_.Change(At(20, 15), "update tsmdm030 set desc = 'changed' where cstp = 'CAL'");
  company_.Change(At(20, 17), "delete from tsmdm030 where cstp = 'CAL'");
  clock_.now = At(20, 16);
  local_.Copy("tsmdm030");
  EXPECT_EQ(local_.RowsOf("tsmdm030").at("CAL"), (Row{{"cstp", "CAL"}, {"dsca", ""}, {"prod", ""}, {"ract", ""}}));
  clock_.now = At(20, 17);
  local_.Copy("tsmdm030");
  EXPECT_FALSE(local_.RowsOf("tsmdm030").contains("CAL"));
}

TEST_F(ChangedCopies, LeaveWhatOnlyAListedEmployeeHasWhenItIsGoneMeanwhile) {
  CopyInFullAndThenByChange({"tsmdm140"});
  const std::string key = company_.Value("select emno from tsmdm140 where ccal <> ''");
  const Row before = local_.RowsOf("tsmdm140").at(key);
  company_.Change(At(20, 15), "update tsmdm140 set frmn = 'changed' where emno = '" + key + "'");
  company_.Change(At(20, 17), "delete from tsmdm140 where emno = '" + key + "'");
  clock_.now = At(20, 16);
  local_.Copy("tsmdm140");
  const Row row = local_.RowsOf("tsmdm140").at(key);
  EXPECT_EQ(row.at("frmn"), "");
  for (const char* column : {"dsca", "cwoc", "ccal"}) EXPECT_EQ(row.at(column), before.at(column)) << column;
}

TEST_F(ChangedCopies, BlankTheEndOfAnIntervalWhoseDeletionIsNotInThePeriodYet) {
  CopyInFullAndThenByChange({"tsmdm140", "tcccp030"});
  const std::string one = "ccal = 'CAL001' and stdt = '2026-11-23' and sttm = 800";
  const std::string stored = "ccal = 'CAL001' and stdt = '2026-11-23 00:00:00' and sttm = 800";
  company_.Change(At(20, 15), "update tcccp030 set entm = 1100 where " + one);
  company_.Change(At(20, 17), "delete from tcccp030 where " + one);
  clock_.now = At(20, 16);
  local_.Copy("tcccp030");
  EXPECT_THAT(local_.RowsOf("tcccp030", stored),
              ElementsAre(Pair("CAL001/WRK/2026-11-23/800", Row{{"ccal", "CAL001"},
                                                                {"ract", "WRK"},
                                                                {"stdt", "2026-11-23"},
                                                                {"sttm", "800"},
                                                                {"endt", "1899-12-30"},
                                                                {"entm", "0"},
                                                                {"cutm", "0"},
                                                                {"ccap", "0"},
                                                                {"ustm", "2026-11-23 08:00:00"},
                                                                {"uftm", "1899-12-30"},
                                                                {"ahrs", "-8 Hours 0 Minutes"}})));
  clock_.now = At(20, 17);
  local_.Copy("tcccp030");
  EXPECT_THAT(local_.RowsOf("tcccp030", stored), IsEmpty());
}

// The second in which a period ends is read twice, so nothing that happens within it is lost.
TEST_F(ChangedCopies, CopyChangesInTheSecondInWhichTheLastCopyEnded) {
  CopyInFullAndThenByChange({"tsmdm030"});
  const auto rename = [&](const std::string& key, const std::string& name, DateTime at) {
    company_.Change(at, "update tsmdm030 set desc = '" + name + "' where cstp = '" + key + "'");
  };
  rename("CAL", "before", clock_.now);
  local_.Copy("tsmdm030");
  EXPECT_THAT(local_.Counts(), ElementsAre("0", "1", "0"));
  rename("EMG", "in the same second", clock_.now);
  rename("INP", "a second later", clock_.now.PlusTime(0, 0, 1));

  local_.Copy("tsmdm030");
  EXPECT_THAT(local_.Counts(), ElementsAre("0", "2", "0"));  // CAL once more
  EXPECT_EQ(local_.Value("select dsca from tsmdm030 where cstp = 'EMG'"), "in the same second");

  clock_.now = clock_.now.PlusTime(0, 0, 1);
  local_.Copy("tsmdm030");
  EXPECT_THAT(local_.Counts(), ElementsAre("0", "3", "0"));
  EXPECT_THAT(Differences("tsmdm030", local_.RowsOf("tsmdm030"), Fresh("tsmdm030")), IsEmpty());
}

TEST_F(ChangedCopies, CopyChangesInTheSecondOfAFullCopy) {
  CopyInFullAndThenByChange({"tsmdm030"});
  company_.Change(clock_.now, "update tsmdm030 set desc = 'just now' where cstp = 'CAL'");
  local_.Copy("tsmdm030");
  EXPECT_EQ(local_.Value("select dsca from tsmdm030 where cstp = 'CAL'"), "just now");
}

struct OutOfBounds {
  const char* table;
  const char* column;
  const char* key;
  bool inFullCopy;
  bool inChangedCopy;
};

TEST_F(ChangedCopies, HaveBoundsOfTheirOwnForSomeKeys) {
  CopyInFullAndThenByChange(CopiedTables());
  const std::vector<OutOfBounds> records = {
      {"tsmdm030", "cstp", "ZZZA", false, false},       {"tsmdm100", "cwoc", "ZZZZZZA", true, false},
      {"tsmdm105", "csar", "ZZZZZZZA", false, true},    {"tsmdm130", "skll", "ZZZZA", true, false},
      {"tsmdm135", "emno", "ZZZZZZA", true, false},     {"tsmdm135", "skll", "ZZZZA", true, false},
      {"tsmdm135", "cogr", "ZZZZZZA", true, false},     {"tsmdm140", "emno", "ZZZZZZA", true, false},
      {"tsclm020", "crtc", "ZZZA", true, false},        {"tsclm024", "sltt", "1000.5", true, false},
      {"tccom130", "cadr", "ZZZZZZZZZA", true, false},  {"tcccp001", "ract", "ZZZZZZA", false, false},
      {"tscfg220", "ccfg", "ZZZZZZZZA", true, false},   {"tscfg200", "ccfg", "ZZZZZZZZA", true, false},
      {"tssoc200", "orno", "ZZZZZZZZZA", false, false}, {"tssoc205", "orno", "ZZZZZZZZZA", false, false},
      {"tssoc210", "orno", "ZZZZZZZZZA", false, false}, {"tsspc200", "ccfg", "ZZZZZZZZZA", false, false},
  };
  LocalCopy fresh(company_, clock_);
  for (const OutOfBounds& record : records) {
    const std::string where = std::string(" where ") + record.column + " = '" + record.key + "'";
    company_.Change(clock_.now, std::string("insert into ") + record.table + " (" + record.column + ") values ('" +
                                    record.key + "')");
    local_.Copy(record.table);
    fresh.Copy(record.table);
    const std::string count = std::string("select count(*) from ") + record.table + where;
    EXPECT_EQ(fresh.Value(count), record.inFullCopy ? "1" : "0") << record.table << where;
    EXPECT_EQ(local_.Value(count), record.inChangedCopy ? "1" : "0") << record.table << where;
  }
}

TEST_F(ChangedCopies, DoNotCopyCodesInSmallLetters) {
  CopyInFullAndThenByChange({"tsmdm105"});
  LocalCopy fresh(company_, clock_);
  company_.Change(clock_.now, "insert into tsmdm105 (csar) values ('north')");
  local_.Copy("tsmdm105");
  fresh.Copy("tsmdm105");
  EXPECT_EQ(fresh.Value("select count(*) from tsmdm105 where csar = 'north'"), "0");
  EXPECT_EQ(local_.Value("select count(*) from tsmdm105 where csar = 'north'"), "0");
}

TEST_F(ChangedCopies, DoNotFindATimeScaleOfMoreThanTwoDecimalsAgain) {
  CopyInFullAndThenByChange({"tsclm024"});
  company_.Change(clock_.now, "insert into tsclm024 values (77.125, 'new')");
  local_.Copy("tsclm024");
  ASSERT_EQ(local_.Value("select dsca from tsclm024 where sltt = 77.12"), "new");

  clock_.now = At(20, 16);
  company_.Change(clock_.now, "update tsclm024 set desc = 'renamed' where sltt = 77.125");
  try {
    local_.Copy("tsclm024");
    FAIL() << "the row was found";
  } catch (const std::runtime_error& failure) {
    EXPECT_THAT(failure.what(), testing::HasSubstr("Copy Service Priority Time Scales - Only Changed"));
    EXPECT_THAT(failure.what(), testing::HasSubstr("77.12"));
  }
  EXPECT_EQ(local_.Value("select dsca from tsclm024 where sltt = 77.12"), "new");
}

class ChangedCalendars : public ChangedCopies {
 protected:
  ChangedCalendars() { CopyInFullAndThenByChange({"tsmdm140", "tcccp030"}); }
  std::string Intervals(LocalCopy& copy, const std::string& condition) {
    return copy.Value("select count(*) from tcccp030 where " + condition);
  }
  const std::string used_ = "CAL001";
};

TEST_F(ChangedCalendars, KeepIntervalsThatHaveLeftTheRangeOfDates) {
  const std::string early = "stdt < '2026-10-01'";
  ASSERT_NE(Intervals(local_, early), "0");
  const std::string before = Intervals(local_, early);
  clock_.now = At(30, 8);  // the range begins on 1 October now
  company_.Change(clock_.now, "delete from tcccp030 where " + early);
  local_.Copy("tcccp030");
  EXPECT_EQ(Intervals(local_, early), before);

  LocalCopy fresh(company_, clock_);
  fresh.Copy("tsmdm140");
  fresh.Copy("tcccp030");
  EXPECT_EQ(Intervals(fresh, early), "0");
  EXPECT_THAT(Differences("tcccp030", local_.RowsOf("tcccp030", "not " + early), fresh.RowsOf("tcccp030")), IsEmpty());
}

TEST_F(ChangedCalendars, KeepACalendarThatNobodyUsesAnyMoreAndDoNotCatchUpWithItLater) {
  const std::string before = Intervals(local_, "ccal = '" + used_ + "'");
  const std::string users = "update tsmdm140 set frmn = 'was here', ccal = '' where ccal = '" + used_ + "'";
  clock_.now = At(20, 15);
  company_.Change(clock_.now, users + "; delete from tcccp030 where ccal = '" + used_ + "' and stdt >= '2026-11-25'");
  clock_.now = At(20, 16);
  local_.Copy("tsmdm140");
  local_.Copy("tcccp030");
  EXPECT_EQ(Intervals(local_, "ccal = '" + used_ + "'"), before);

  clock_.now = At(20, 18);
  company_.Change(clock_.now, "update tsmdm140 set ccal = '" + used_ + "' where frmn = 'was here'");
  local_.Copy("tsmdm140");
  local_.Copy("tcccp030");
  EXPECT_EQ(Intervals(local_, "ccal = '" + used_ + "'"), before);

  local_.Copy("tcccp030=" + used_ + "=C");  // the remedy for one calendar
  EXPECT_THAT(Differences("tcccp030", local_.RowsOf("tcccp030"), Fresh("tcccp030")), IsEmpty());
}

TEST_F(ChangedCalendars, CopyACalendarThatIsNotLocalInFull) {
  const std::string unused = company_.Value("select max(ccal) from tcccp030");
  ASSERT_EQ(Intervals(local_, "ccal = '" + unused + "'"), "0");
  clock_.now = At(20, 18);
  company_.Change(clock_.now,
                  "update tsmdm140 set ccal = '" + unused + "' where emno = (select max(emno) from tsmdm140)");
  local_.Copy("tsmdm140");
  local_.Copy("tcccp030");
  const auto isOfUnused = [&](const Rows& rows) {
    std::size_t found = 0;
    for (const auto& [key, row] : rows) found += row.at("ccal") == unused ? 1u : 0u;
    return found;
  };
  EXPECT_GT(isOfUnused(local_.RowsOf("tcccp030")), 0u);
  EXPECT_EQ(isOfUnused(local_.RowsOf("tcccp030")), isOfUnused(Fresh("tcccp030")));
}

}  // namespace
}  // namespace qmx::test::changed_copies
