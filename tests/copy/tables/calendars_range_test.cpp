// The range of start dates: how far back, in which form, to which day of 2038.
#include "tests/copy/tables/calendar_rig.h"
#include "tests/support/raised.h"

namespace qmx::test::calendars_range {
namespace {

const char* const kSettings = "\\home\\qmx\\QMX_CAL.INI";

struct CalendarRange : testing::Test {
  void SetUp() override {
    rig.Employee("4711", "DAY");
    rig.ErpHas({{"DAY", {Interval("DAY", "2026-11-20", 800, "2026-11-20", 1630)}}});
  }
  void Today(int year, int month, int day) {
    rig.clock.now = DateTime::FromDate(year, month, day).PlusTime(23, 59, 59);
  }

  // The range that a copy asks the ERP for: `tableName` as on the command line.
  std::string RangeOf(const std::string& tableName) {
    rig.calls.Clear();
    rig.Run(tableName);
    const std::vector<std::string> lists = rig.calls.StartingWith({"manager.listActualCalendar"});
    if (lists.size() != 1) return std::to_string(lists.size()) + " listings";
    const std::size_t start = lists[0].find("\"ZZZZZZZZZ\", ") + 13;
    return lists[0].substr(start, lists[0].find(", 0, 2400") - start);
  }
  std::string FullRange() { return RangeOf(kCalendars); }
  std::string ChangedRange() {
    rig.Sql("delete from tcccp030");
    if (rig.InUse(kCalendars) == "no record") rig.AuditsByCalendar({});
    return RangeOf(kCalendars);
  }
  std::string RequestedRange() { return RangeOf("tcccp030=DAY=C"); }

  CalendarRig rig;
};

TEST_F(CalendarRange, IsUnpaddedInFullAndOnRequest) {
  Today(2026, 3, 9);
  EXPECT_EQ(FullRange(), "\"2026-1-8\", \"2038-3-9\"");
  EXPECT_EQ(RequestedRange(), "\"2026-1-8\", \"2038-3-9\"");
}

TEST_F(CalendarRange, IsPaddedByChange) {
  Today(2026, 3, 9);
  EXPECT_EQ(ChangedRange(), "\"2026-01-08\", \"2038-03-09\"");
  EXPECT_THAT(rig.calls.StartingWith({"parameter2.set"}),
              ElementsAre("parameter2.setFieldName(\"stdt\")", "parameter2.setFrom(\"2026-01-08\")",
                          "parameter2.setTo(\"2038-03-09\")"));
}

TEST_F(CalendarRange, HasNoLeadingZerosToPadFromOctoberOn) {
  Today(2026, 12, 31);
  EXPECT_EQ(ChangedRange(), "\"2026-11-01\", \"2038-12-31\"");
}

TEST_F(CalendarRange, EndsOnADayThatDoesNotExistOn29February) {
  Today(2028, 2, 29);
  EXPECT_EQ(FullRange(), "\"2027-12-31\", \"2038-2-29\"");
  EXPECT_EQ(RequestedRange(), "\"2027-12-31\", \"2038-2-29\"");
}

TEST_F(CalendarRange, EndsOnThatDayInThePaddedFormToo) {
  Today(2028, 2, 29);
  EXPECT_EQ(ChangedRange(), "\"2027-12-31\", \"2038-02-29\"");
}

TEST_F(CalendarRange, LooksBackOverTheTurnOfTheYear) {
  Today(2027, 1, 1);
  EXPECT_EQ(FullRange(), "\"2026-11-2\", \"2038-1-1\"");
  EXPECT_EQ(RequestedRange(), "\"2026-11-2\", \"2038-1-1\"");
}

TEST_F(CalendarRange, LooksBackAsFarAsTheSettingsFileSays) {
  rig.files.texts[kSettings] = "days=30\r\nanything else";
  EXPECT_EQ(FullRange(), "\"2026-10-21\", \"2038-11-20\"");
  EXPECT_FALSE(rig.files.IsOpen());
  EXPECT_EQ(RequestedRange(), "\"2026-9-21\", \"2038-11-20\"");
}

TEST_F(CalendarRange, LooksBackByChangeAsFarAsTheSettingsFileSays) {
  rig.files.texts[kSettings] = "days=30.9";
  EXPECT_EQ(ChangedRange(), "\"2026-10-21\", \"2038-11-20\"");
}

TEST_F(CalendarRange, LooksBackNotAtAllForAWordInPlaceOfTheNumber) {
  rig.files.texts[kSettings] = "days=many";
  EXPECT_EQ(FullRange(), "\"2026-11-20\", \"2038-11-20\"");
}

TEST_F(CalendarRange, LooksBack60DaysWhenTheSettingsFileIsMissing) {
  EXPECT_EQ(FullRange(), "\"2026-9-21\", \"2038-11-20\"");
  EXPECT_FALSE(rig.files.IsOpen());
}

TEST_F(CalendarRange, LooksBack60DaysWhenTheSettingsFileIsBroken) {
  for (const char* broken : {"days", "=", "days=32768", "days:30"}) {
    rig.files.texts[kSettings] = broken;
    const char* expected =
        std::string_view(broken) == "=" ? "\"2026-11-20\", \"2038-11-20\"" : "\"2026-9-21\", \"2038-11-20\"";
    EXPECT_EQ(FullRange(), expected) << broken;
  }
}

TEST_F(CalendarRange, LooksBack60DaysWhenTheSettingsFileCannotBeOpened) {
  rig.files.texts[kSettings] = "days=30";
  rig.files.failOn = "OpenForInput";
  EXPECT_EQ(FullRange(), "\"2026-9-21\", \"2038-11-20\"");
  EXPECT_FALSE(rig.files.IsOpen());
  EXPECT_THAT(rig.CopyLog(kCalendars), testing::HasSubstr("1 records Inserted"));
}

// Reading the empty file fails and leaves file number 1 open, which the copy log needs: it can be written neither with
// the counts nor with the error, so the failure leaves the run and the table stays marked as in progress.
TEST_F(CalendarRange, LosesTheCopyLogToAnEmptySettingsFile) {
  rig.files.texts[kSettings] = "";
  EXPECT_EQ(Raised([&] { rig.Run(kCalendars); }).Number(), 55);
  EXPECT_THAT(rig.calls.StartingWith({"manager.list"}),
              ElementsAre(testing::HasSubstr("\"2026-9-21\", \"2038-11-20\"")));
  EXPECT_EQ(rig.LocalRecords().size(), 1u);
  EXPECT_EQ(rig.Lutm(kCalendars), "2026-11-20 14:05:09");
  EXPECT_TRUE(rig.files.IsOpen());
  EXPECT_EQ(rig.CopyLog(kCalendars), "");
  EXPECT_EQ(rig.InUse(kCalendars), "1");
  EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"tcccp030\""));
}

TEST_F(CalendarRange, LosesTheCopyLogToAnEmptySettingsFileByChangeToo) {
  rig.files.texts[kSettings] = "";
  rig.AuditsByCalendar({});
  EXPECT_EQ(Raised([&] { rig.Run(kCalendars); }).Number(), 55);
  EXPECT_EQ(rig.LocalRecords().size(), 1u);
  EXPECT_EQ(rig.InUse(kCalendars), "1");
}

}  // namespace
}  // namespace qmx::test::calendars_range
