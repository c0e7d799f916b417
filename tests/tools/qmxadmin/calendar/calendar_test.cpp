// qmxadmin calendar as its user has it, on every database system.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/database.h"
#include "schema/dialect.h"
#include "schema/local_tables.h"
#include "tests/support/driver_under_test.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"
#include "tests/support/terminal_process.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class CalendarsIn : public testing::Test {
 protected:
  explicit CalendarsIn(std::unique_ptr<TestDatabase> database) : base(std::move(database)) {
    Connection connection({&base->GetDriver()}, nullptr);
    connection.Open(base->ConnectionText(), "", "");
    const Dialect& dialect = *DialectOfSystem(connection.System());
    for (const LocalTable& table : LocalTables()) {
      if (table.name == "tscalender" || table.name == "tsmdm140") connection.Execute(dialect.CreateTable(table));
    }
    connection.Execute(
        "insert into tsmdm140 (emno, dsca, ccal) values ('E1', 'Jane Doe', 'DAY'), ('E2', 'Joe', ''), ('E3', null, "
        "'NONE')");
    connection.Execute(
        "insert into tscalender (ccal, sttm, entm) values "
        "('DAY', '2026-11-23 08:00:00', '2026-11-23 12:00:00'), ('DAY', '2026-11-23 12:30:00', '2026-11-23 16:30:00'), "
        "('DAY', '2026-11-29 22:00:00', '2026-11-30 06:00:00'), ('DAY', '2026-12-24 08:00:00', '2026-12-24 12:00:00'), "
        "('NIGHT', '2026-11-24 22:00:00', '2026-11-25')");
    connection.Close();
  }

  Process Calendar(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"calendar", base->ConnectionText(), ""});
    return test::Run(QMX_ADMIN, arguments);
  }

  std::unique_ptr<TestDatabase> base;
  TempFolder folder;
};

class QmxAdminCalendar : public CalendarsIn {
 protected:
  QmxAdminCalendar() : CalendarsIn(DriversUnderTest().front().make()) {}
};

class QmxAdminCalendarOnASystem : public CalendarsIn, public testing::WithParamInterface<DriverUnderTest> {
 protected:
  QmxAdminCalendarOnASystem() : CalendarsIn(GetParam().make()) {}
};
INSTANTIATE_TEST_SUITE_P(Over, QmxAdminCalendarOnASystem,
                         testing::ValuesIn(DriversUnderTest([](const DriverUnderTest& driver) {
                           return driver.name == "SQLite" || !driver.name.starts_with("SQLite");
                         })),
                         [](const auto& info) { return info.param.name; });

TEST_P(QmxAdminCalendarOnASystem, DrawsTheWeeksThatHoldTheDays) {
  const Process run = Calendar({"DAY", "--from", "2026-11-24", "--to", "2026-12-01"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.err, IsEmpty());
  EXPECT_THAT(run.out, StartsWith("Calendar DAY\n23 November – 6 December 2026 · 16:00 hours\n\n"
                                  "Week 48 · 23 – 29 November 2026"));
  EXPECT_THAT(run.out, AllOf(HasSubstr("  8:00  08:00–12:00 12:30–16:30\n"), HasSubstr("  2:00  22:00–06:00\n"),
                             HasSubstr("Week 49 · 30 November – 6 December 2026"), HasSubstr("  6:00  22:00–06:00\n")));
  EXPECT_THAT(run.out, Not(HasSubstr("Week 50")));
}

TEST_P(QmxAdminCalendarOnASystem, DrawsAnEmployeesCalendarUnderTheirName) {
  const Process run = Calendar({"--employee", "E1", "--from", "2026-11-23", "--to", "2026-11-29"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, StartsWith("Calendar DAY\nEmployee E1, Jane Doe · 23 – 29 November 2026 · 10:00 hours\n"));
}

TEST_F(QmxAdminCalendar, DrawsSeveralBelowEachOther) {
  const Process run = Calendar({"DAY", "NIGHT", "--from", "2026-11-23", "--to", "2026-11-29"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out,
              AllOf(StartsWith("Calendar DAY\n"), HasSubstr("\n\nCalendar NIGHT\n"), HasSubstr("22:00–24:00")));
}

TEST_F(QmxAdminCalendar, GivesTheIntervalsAsJson) {
  const Process run = Calendar({"DAY", "--from", "2026-11-24", "--to", "2026-11-24", "--json"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(
      run.out,
      "[\n"
      "  {\"calendar\":\"DAY\",\"employee\":null,\"from\":\"2026-11-23 08:00:00\",\"to\":\"2026-11-23 12:00:00\"},\n"
      "  {\"calendar\":\"DAY\",\"employee\":null,\"from\":\"2026-11-23 12:30:00\",\"to\":\"2026-11-23 16:30:00\"},\n"
      "  {\"calendar\":\"DAY\",\"employee\":null,\"from\":\"2026-11-29 22:00:00\",\"to\":\"2026-11-30 06:00:00\"}\n"
      "]\n");
}

TEST_F(QmxAdminCalendar, ShowsFourWeeksIfNothingElseIsAskedFor) {
  const auto weeks = [](const std::string& text) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find("\nWeek ", at)) != std::string::npos; ++at) ++count;
    return count;
  };
  EXPECT_EQ(weeks(Calendar({"DAY"}).out), 4U);
  EXPECT_EQ(weeks(Calendar({"DAY", "--from", "2026-11-23"}).out), 4U);
  EXPECT_EQ(weeks(Calendar({"DAY", "--to", "2026-11-29"}).out), 4U);
}

TEST_F(QmxAdminCalendar, WritesAnSvgFileAndNothingElse) {
  const Process run = Calendar({"DAY", "--from", "2026-11-23", "--to", "2026-11-29", "--svg", folder / "day.svg"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, IsEmpty());
  EXPECT_THAT(ReadFile(folder / "day.svg"),
              AllOf(StartsWith("<svg "), HasSubstr(">Calendar DAY<"), HasSubstr("</svg>")));
  const Process there = Calendar({"DAY", "--from", "2026-11-23", "--to", "2026-11-29", "--svg", "-"});
  EXPECT_EQ(there.out, ReadFile(folder / "day.svg"));
}

TEST_F(QmxAdminCalendar, FitsTheTerminal) {
  TerminalProcess run(QMX_ADMIN,
                      {"calendar", base->ConnectionText(), "", "NIGHT", "--from", "2026-11-23", "--to", "2026-11-29"},
                      {}, 50);
  EXPECT_THAT(run.Wait().shown, HasSubstr("Tue 24 Nov  ·     ·     ·     ·   ██·  2:00\r\n"));
}

TEST_F(QmxAdminCalendar, DoesNotTakeTheUnknownForEmpty) {
  const auto refusal = [&](std::vector<std::string> arguments) {
    const Process run = Calendar(std::move(arguments));
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.out, IsEmpty());
    return run.err;
  };
  EXPECT_THAT(refusal({"SOME"}),
              HasSubstr("There is no calendar \"SOME\" in tscalender. \"qmxadmin expand\" fills it"));
  EXPECT_THAT(refusal({"DAY", "SOME"}), HasSubstr("There is no calendar \"SOME\""));
  EXPECT_THAT(refusal({"--employee", "E9"}), HasSubstr("There is no service employee \"E9\" in tsmdm140."));
  EXPECT_THAT(refusal({"--employee", "E2"}), HasSubstr("The service employee \"E2\" has no calendar."));
  EXPECT_THAT(refusal({"--employee", "E3"}), HasSubstr("There is no calendar \"NONE\""));
  EXPECT_THAT(refusal({}), HasSubstr("Name a calendar or give --employee."));
  EXPECT_THAT(refusal({"it's"}), StartsWith("error -2147217900, SQL text: The value it's holds a quote: "));
}

TEST_F(QmxAdminCalendar, RefusesDaysThatAreNone) {
  EXPECT_THAT(Calendar({"DAY", "--from", "tomorrow"}).err,
              HasSubstr("\"tomorrow\" is not a date of the form YYYY-MM-DD."));
  EXPECT_THAT(Calendar({"DAY", "--from", "2026-02-30"}).err, HasSubstr("is not a date"));
  EXPECT_THAT(Calendar({"DAY", "--from", "2026-11-30", "--to", "2026-11-29"}).err,
              HasSubstr("The last day, 2026-11-29, is before the first day, 2026-11-30."));
  EXPECT_THAT(Calendar({"DAY", "--from", "1000-01-01", "--to", "2026-11-29"}).err, HasSubstr("at most ten years"));
}

TEST_F(QmxAdminCalendar, SaysWhyAFileCannotBeWritten) {
  const Process run = Calendar({"DAY", "--svg", folder / "missing/day.svg"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "error 75, qmxadmin: The file \"" + (folder / "missing/day.svg") +
                         "\" cannot be written: No such file or directory.\n");
}

}  // namespace
}  // namespace qmx::test
