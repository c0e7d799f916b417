// orvan-sandbox make: the same for the same seed, hanging together, and with the odd cases that copies must meet.
#include "sandbox/tool/make.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "sandbox/binding/failure.h"
#include "tests/sandbox/content.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace orvan::test {
namespace {

using qmx::test::TempFolder;
using testing::HasSubstr;
using testing::IsEmpty;

const Moment kToday{2026, 11, 20, 0, 0, 0};

class Make : public testing::Test {
 protected:
  std::string File(const char* name) const { return (folder_.Path() / name).string(); }

  std::string Made(const char* name, std::uint64_t seed = 1, const Sizes& sizes = {}) {
    MakeSandbox(File(name), Plan{seed, kToday, sizes}, false);
    return File(name);
  }

  TempFolder folder_;
};

TEST_F(Make, GivesTheSameContentForTheSameSeed) {
  const auto first = Content(Made("first.db", 7));
  EXPECT_GT(first.size(), 4000u);
  EXPECT_EQ(first, Content(Made("second.db", 7)));
  EXPECT_NE(first, Content(Made("third.db", 8)));
}

TEST_F(Make, MakesAsManyRecordsAsAreAskedFor) {
  Sizes sizes;
  sizes.serviceTypes = 40;
  sizes.centers = 3;
  sizes.areas = 5;
  sizes.skills = 20;
  sizes.employees = 17;
  sizes.addresses = 33;
  sizes.configurations = 9;
  sizes.orders = 123;
  sizes.activities = 0;
  const std::string path = Made("some.db", 1, sizes);
  const auto count = [&](const std::string& table) { return One(path, "SELECT count(*) FROM " + table); };
  EXPECT_EQ("40", count("tsmdm030"));
  EXPECT_EQ("3", count("tsmdm100"));
  EXPECT_EQ("5", count("tsmdm105"));
  EXPECT_EQ("20", count("tsmdm130"));
  EXPECT_EQ("17", count("tsmdm140"));
  EXPECT_EQ("33", count("tccom130"));
  EXPECT_EQ("9", count("tscfg220"));
  EXPECT_EQ("123", count("tssoc200"));
  EXPECT_EQ("0", count("tssoc210"));
  EXPECT_EQ("0", count("tssoc205"));
}

TEST_F(Make, FillsEveryTableAndLeavesTheAuditTrailEmpty) {
  const std::string path = Made("full.db");
  for (const Table& table : AllTables()) {
    EXPECT_NE("0", One(path, "SELECT count(*) FROM " + std::string(table.code))) << table.code;
    EXPECT_EQ("0", One(path, "SELECT count(*) FROM " + AuditTable(table))) << table.code;
  }
}

// "table.column -> table.column": every code that is not blank has its record.
TEST_F(Make, MakesRecordsThatHangTogether) {
  const std::string path = Made("full.db");
  struct Reference {
    const char *table, *column, *toTable, *toColumn;
  };
  const Reference references[] = {
      {"tsmdm030", "ract", "tcccp001", "ract"}, {"tsmdm100", "cmwc", "tsmdm100", "cwoc"},
      {"tsmdm105", "cwoc", "tsmdm100", "cwoc"}, {"tsmdm105", "cmsa", "tsmdm105", "csar"},
      {"tsmdm135", "emno", "tsmdm140", "emno"}, {"tsmdm135", "skll", "tsmdm130", "skll"},
      {"tsmdm140", "cwoc", "tsmdm100", "cwoc"}, {"tsmdm140", "csar", "tsmdm105", "csar"},
      {"tsmdm140", "frmn", "tsmdm140", "emno"}, {"tsmdm140", "ccal", "tcccp030", "ccal"},
      {"tsclm020", "ccal", "tcccp030", "ccal"}, {"tcccp030", "ract", "tcccp001", "ract"},
      {"tscfg220", "cwoc", "tsmdm100", "cwoc"}, {"tscfg220", "csar", "tsmdm105", "csar"},
      {"tscfg220", "tecr", "tsmdm140", "emno"}, {"tscfg220", "cadr", "tccom130", "cadr"},
      {"tscfg200", "ccfg", "tscfg220", "ccfg"}, {"tssoc200", "ccfg", "tscfg220", "ccfg"},
      {"tssoc200", "emno", "tsmdm140", "emno"}, {"tssoc210", "orno", "tssoc200", "orno"},
      {"tssoc210", "cstp", "tsmdm030", "cstp"}, {"tssoc210", "crtc", "tsclm020", "crtc"},
      {"tssoc205", "orno", "tssoc200", "orno"}, {"tssoc205", "emno", "tsmdm140", "emno"},
      {"tsspc200", "ccfg", "tscfg220", "ccfg"}, {"tsspc200", "cstp", "tsmdm030", "cstp"},
  };
  for (const auto& [table, column, toTable, toColumn] : references) {
    const std::string sql = std::string("SELECT DISTINCT ") + column + " FROM " + table + " WHERE " + column +
                            " <> '' AND " + column + " NOT IN (SELECT " + toColumn + " FROM " + toTable + ")";
    EXPECT_THAT(Query(path, sql), IsEmpty()) << table << '.' << column << " -> " << toTable << '.' << toColumn;
    EXPECT_NE("0", One(path, std::string("SELECT count(*) FROM ") + table + " WHERE " + column + " <> ''"))
        << table << '.' << column << " is blank everywhere";
  }
  EXPECT_THAT(Query(path, "SELECT orno FROM tssoc200 o JOIN tscfg220 c USING (ccfg) WHERE o.ofbp <> c.ofbp"),
              IsEmpty());
  EXPECT_THAT(Query(path, "SELECT ofbp FROM tssoc200 GROUP BY ofbp HAVING count(DISTINCT stna) > 1"), IsEmpty())
      << "a partner has one name";
  EXPECT_THAT(
      Query(path,
            "SELECT e.orno FROM tssoc205 e WHERE NOT EXISTS (SELECT 1 FROM tssoc210 a WHERE a.orno = e.orno AND "
            "a.acln = e.acln)"),
      IsEmpty())
      << "an engineer works on an activity of the order";
}

TEST_F(Make, MakesOrdersWithTheOddCases) {
  const std::string path = Made("full.db");
  const auto some = [&](const std::string& condition) {
    EXPECT_NE("0", One(path, "SELECT count(*) FROM tssoc200 WHERE " + condition)) << condition;
  };
  some("pstm IS NULL");
  some("aftm IS NULL AND astm IS NOT NULL");
  some("pstm LIKE '2026-10-25 01:30%' AND pftm > '2026-10-25 02:00'");  // across the hour that comes twice
  some("pstm LIKE '2026-03-29 01:30%' AND pftm > '2026-03-29 02:00'");  // across the hour that is missing
  some("blyn = 1");
  some("ityn = 1 AND crit <> ''");
  some("blyn = 0");
  some("appo = 3");
  some("osta = 70");
  some("stna LIKE '%''%'");
  EXPECT_EQ("90.5", One(path, "SELECT sltt FROM tsclm024 WHERE sltt = 90.5"));
}

TEST_F(Make, MakesCalendarsOfEveryKind) {
  Sizes sizes;
  sizes.calendars = 8;
  sizes.employees = 20;
  const std::string path = Made("full.db", 1, sizes);
  const auto all = [&](const std::string& condition) {
    return One(path, "SELECT count(*) FROM tcccp030 WHERE " + condition);
  };
  EXPECT_NE("0", all("ccal = 'CAL001' AND sttm = 1245")) << "after the break";
  EXPECT_NE("0", all("ccal = 'CAL002' AND sttm = 1400")) << "the late shift begins when the early one ends";
  EXPECT_NE("0", all("ccal = 'CAL003' AND entm = 2400")) << "up to midnight";
  EXPECT_NE("0", all("ccal = 'CAL003' AND sttm = 0")) << "from midnight on";
  EXPECT_NE("0", all("ccal = 'CAL004' AND endt > stdt")) << "several days in one record";
  EXPECT_EQ("0", all("stdt LIKE '%-12-25' AND ccal = 'CAL001'")) << "a holiday";
  EXPECT_NE("0", all("stdt = '2026-12-24' AND ccal = 'CAL001'"));
  EXPECT_NE("0", all("ccal = 'CAL006' AND ract = 'OVT' AND sttm = 1630")) << "overlaps the day until 1700";
  EXPECT_EQ("2026-08-22", One(path, "SELECT min(stdt) FROM tcccp030 WHERE ccal = 'CAL004'"));
  EXPECT_EQ("1", One(path,
                     "SELECT count(*) FROM (SELECT julianday(stdt) - julianday(lag(stdt) OVER (ORDER BY stdt)) AS days "
                     "FROM tcccp030 WHERE ccal = 'CAL005') WHERE days > 100"))
      << "one gap of more than 100 days";
  EXPECT_EQ("7", One(path, "SELECT count(DISTINCT ccal) FROM tsmdm140 WHERE ccal <> ''"));
  EXPECT_EQ("0", One(path, "SELECT count(*) FROM tsmdm140 WHERE ccal = 'CAL008'")) << "a calendar that nobody has yet";
  EXPECT_NE("0", all("ccal = 'CAL008'"));
  EXPECT_NE("0", One(path, "SELECT count(*) FROM tsmdm140 WHERE ccal = ''")) << "an employee without a calendar";
  EXPECT_NE("1", One(path, "SELECT max(n) FROM (SELECT count(*) AS n FROM tsmdm140 WHERE ccal <> '' GROUP BY ccal)"))
      << "employees share calendars";
}

TEST_F(Make, KeepsAFileThatIsThereUnlessItMayBeReplaced) {
  const std::string path = Made("kept.db", 1);
  const auto before = Content(path);
  const qmx::test::Process refused = qmx::test::Run(TEST_TOOL, {"make", path, "--seed", "2"});
  EXPECT_EQ(1, refused.status);
  EXPECT_EQ(
      "orvan-sandbox: \"" + path + "\" exists already. Choose another name, or say --replace to lose what is in it.\n",
      refused.err);
  EXPECT_EQ(before, Content(path));
  EXPECT_EQ(0, qmx::test::Run(TEST_TOOL, {"make", path, "--seed", "2", "--replace"}).status);
  EXPECT_NE(before, Content(path));
}

TEST_F(Make, LeavesNothingBehindWhenItFails) {
  std::filesystem::create_directory(File("taken.db"));
  qmx::test::WriteFile(folder_.Path() / "taken.db" / "inside", "x");
  EXPECT_EQ(1, qmx::test::Run(TEST_TOOL, {"make", File("taken.db"), "--replace"}).status);
  EXPECT_FALSE(std::filesystem::exists(File("taken.db.unfinished")));
}

TEST_F(Make, NamesAFileThatCannotBeMade) {
  const qmx::test::Process made = qmx::test::Run(TEST_TOOL, {"make", "/no/such/folder/x.db"});
  EXPECT_EQ(1, made.status);
  EXPECT_EQ(
      "orvan-sandbox: The file \"/no/such/folder/x.db.unfinished\" cannot be made: unable to open database file. "
      "Check that its folder exists and may be written.\n",
      made.err);
}

TEST_F(Make, NeedsAtLeastOneOfWhatOrdersAreMadeOf) {
  const qmx::test::Process made = qmx::test::Run(TEST_TOOL, {"make", File("none.db"), "--employees", "0"});
  EXPECT_EQ(1, made.status);
  EXPECT_THAT(made.err, HasSubstr("make at least one of each"));
}

TEST_F(Make, RefusesADayThatIsNone) {
  const qmx::test::Process made = qmx::test::Run(TEST_TOOL, {"make", File("x.db"), "--today", "tomorrow"});
  EXPECT_NE(0, made.status);
  EXPECT_THAT(made.err, HasSubstr("--today: \"tomorrow\" is no date; write it as 2026-11-20"));
}

TEST_F(Make, ShowsWhatItMade) {
  const std::string path = Made("shown.db");
  const qmx::test::Process shown = qmx::test::Run(TEST_TOOL, {"show", path});
  EXPECT_EQ(0, shown.status);
  EXPECT_THAT(shown.out, HasSubstr("tsmdm030  Service Types                     12\n"));
  EXPECT_THAT(shown.out, HasSubstr("tssoc200  Service Orders                   400\n"));
}

}  // namespace
}  // namespace orvan::test
