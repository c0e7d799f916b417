// Date objects, yes and no, and the calendar look-back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/copy_rig.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;

TEST(DateObject, BecomesALocalDateTime) {
  CopyRig rig;
  EXPECT_TRUE(rig.inside.DateObjectToDate(rig.erp.Date({126, 11, 31, 23, 59, 58})));
  EXPECT_EQ(rig.inside.ConvertedDate(), Variant(DateTime::FromDate(2026, 12, 31).PlusTime(23, 59, 58)));
}

TEST(DateObject, IsAskedForEachPartByItsOwnCallInOrder) {
  CopyRig rig;
  rig.inside.DateObjectToDate(rig.erp.Date({126, 0, 2, 3, 4, 5}));
  EXPECT_THAT(rig.calls.Lines(),
              ElementsAre("date1.getyear()", "date1.getMonth()", "date1.getyear()", "date1.getMonth()",
                          "date1.getDate()", "date1.getHours()", "date1.getMinutes()", "date1.getSeconds()"));
}

TEST(DateObject, IsNoDateInJanuary1900) {
  CopyRig rig;
  EXPECT_TRUE(rig.inside.DateObjectToDate(rig.erp.Date({100, 5, 1, 0, 0, 0})));
  EXPECT_FALSE(rig.inside.DateObjectToDate(rig.erp.Date({0, 0, 1, 12, 30, 0})));
  EXPECT_EQ(rig.inside.ConvertedDate(), Variant(std::int16_t{0}));
  EXPECT_EQ(rig.calls.Lines().back(), "date2.getMonth()");
}

TEST(DateObject, IsADateInFebruary1900AndInJanuary1901) {
  CopyRig rig;
  EXPECT_TRUE(rig.inside.DateObjectToDate(rig.erp.Date({0, 1, 1, 0, 0, 0})));
  EXPECT_EQ(rig.inside.ConvertedDate().ToText(), "1900-02-01");
  EXPECT_TRUE(rig.inside.DateObjectToDate(rig.erp.Date({1, 0, 1, 0, 0, 0})));
  EXPECT_EQ(rig.inside.ConvertedDate().ToText(), "1901-01-01");
}

TEST(DateObject, CarriesPartsOutOfTheirRange) {
  CopyRig rig;
  EXPECT_TRUE(rig.inside.DateObjectToDate(rig.erp.Date({126, 12, 0, 24, 60, 60})));
  EXPECT_EQ(rig.inside.ConvertedDate().ToText(), "2027-01-01 01:01:00");
  EXPECT_TRUE(rig.inside.DateObjectToDate(rig.erp.Date({126, 1, 29, 0, 0, -1})));
  EXPECT_EQ(rig.inside.ConvertedDate().ToText(), "2026-02-28 23:59:59");
}

TEST(DateObject, FailsOnAPartBeyondSixteenBits) {
  CopyRig rig;
  EXPECT_EQ(Raised([&] {
              rig.inside.DateObjectToDate(rig.erp.Date({40000, 0, 1, 0, 0, 0}));
            }).Number(),
            errors::kOverflow);
  EXPECT_EQ(Raised([&] {
              rig.inside.DateObjectToDate(rig.erp.Date({126, 0, 1, 0, 0, -32769}));
            }).Number(),
            errors::kOverflow);
}

TEST(DateObject, FailsOnAYearThatNoDateTimeHas) {
  CopyRig rig;
  EXPECT_EQ(Raised([&] {
              rig.inside.DateObjectToDate(rig.erp.Date({8100, 0, 1, 0, 0, 0}));
            }).Number(),
            errors::kOverflow);
}

TEST(DateObject, FailsWhenThereIsNone) {
  CopyRig rig;
  EXPECT_EQ(Raised([&] { rig.inside.DateObjectToDate(Object()); }).Number(), errors::kObjectNotSet);
}

TEST(DateObject, OfNowIsSetFromOneReadingOfTheDateAndThreeOfTheTime) {
  CopyRig rig;
  rig.clock.now = DateTime::FromDate(2026, 12, 31).PlusTime(23, 59, 58);
  rig.clock.step = 1;
  const Object date = rig.inside.NowAsDateObject();
  EXPECT_THAT(rig.calls.Lines(),
              ElementsAre("create java:java.util.Date", "date1.setDate(31)", "date1.setmonth(11)", "date1.setYear(126)",
                          "date1.setHours(23)", "date1.setMinutes(0)", "date1.setSeconds(1)"));
}

TEST(YesNo, IsOneOnlyForTheErpsYes) {
  EXPECT_EQ(DataCopyInside::YesNoToFlag(1), 1);
  for (const int code : {0, 2, 3, -1, 255, 257}) {
    EXPECT_EQ(DataCopyInside::YesNoToFlag(static_cast<std::int16_t>(code)), 0) << code;
  }
}

std::int16_t LookBack(const std::string& text) {
  CopyRig rig;
  rig.files.texts["\\home\\qmx\\QMX_CAL.INI"] = text;
  const std::int16_t days = rig.inside.ReadCalendarLookBack();
  EXPECT_EQ(rig.files.IsOpen(), text.empty()) << text;
  return days;
}

TEST(CalendarLookBack, IsTheNumberAfterTheFirstFieldsEqualsSign) {
  EXPECT_EQ(LookBack("days=30"), 30);
  EXPECT_EQ(LookBack("days=30\r\nmore=7\r\n"), 30);
  EXPECT_EQ(LookBack("days=30,more=7"), 30);
  EXPECT_EQ(LookBack("days= 45 days"), 45);
  EXPECT_EQ(LookBack("days=\t45\tdays"), 45);
  EXPECT_EQ(LookBack("=12"), 12);
  EXPECT_EQ(LookBack("a=1=2"), 1);
  EXPECT_EQ(LookBack("days=+9"), 9);
  EXPECT_EQ(LookBack("days=1e2 or so"), 100);
  EXPECT_EQ(LookBack("days=32767"), 32767);
}

TEST(CalendarLookBack, IsReadUnderFileNumber1) {
  CopyRig rig;
  rig.files.texts["\\home\\qmx\\QMX_CAL.INI"] = "days=30";
  EXPECT_EQ(rig.inside.ReadCalendarLookBack(), 30);
  EXPECT_EQ(rig.files.numbers["\\home\\qmx\\QMX_CAL.INI"], std::set<int>{1});
}

TEST(CalendarLookBack, IsRoundedDown) {
  EXPECT_EQ(LookBack("days=30.9"), 30);
  EXPECT_EQ(LookBack("days=-1.5"), -2);
  EXPECT_EQ(LookBack("days=.5"), 0);
  EXPECT_EQ(LookBack("days=1e-999"), 0);
}

TEST(CalendarLookBack, IsZeroWithoutALeadingNumber) {
  EXPECT_EQ(LookBack("days="), 0);
  EXPECT_EQ(LookBack("days=many"), 0);
  EXPECT_EQ(LookBack("days=inf"), 0);
  EXPECT_EQ(LookBack("days=-nan"), 0);
  EXPECT_EQ(LookBack("days=  "), 0);
  EXPECT_EQ(LookBack("days=."), 0);
  EXPECT_EQ(LookBack("days=+-5"), 0);
}

TEST(CalendarLookBack, IsSixtyWhenTheFileCannotBeRead) {
  CopyRig rig;
  EXPECT_EQ(rig.inside.ReadCalendarLookBack(), 60);
  EXPECT_EQ(LookBack("days"), 60);
  EXPECT_EQ(LookBack("\r\ndays=30"), 60);
  EXPECT_EQ(LookBack("days=32768"), 60);
  EXPECT_EQ(LookBack("days=1e999"), 60);
  EXPECT_EQ(LookBack("days=-32769"), 60);
}

TEST(CalendarLookBack, LeavesAnEmptyFileOpenSoThatTheCopyLogCannotBeOpened) {
  CopyRig rig;
  rig.files.texts["\\home\\qmx\\QMX_CAL.INI"] = "";
  EXPECT_EQ(rig.inside.ReadCalendarLookBack(), 60);
  EXPECT_EQ(Raised([&] { rig.inside.WriteCountLog("tcccp030", 0, 0, 0); }).Number(), errors::kFileAlreadyOpen);
}

}  // namespace
}  // namespace qmx::test
