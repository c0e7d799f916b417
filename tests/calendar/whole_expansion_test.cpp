// An expansion whose calendars are replaced in one transaction each: the intervals of a calendar are all old or all
// new, whatever fails.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "tests/calendar/calendar_database.h"
#include "tests/support/faulty_driver.h"

namespace qmx::test {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

using Shown = std::vector<std::string>;

const Shown kOldShown = {"1999-01-01 > 1999-01-02"};
const Shown kDayShown = {"2001-03-05 08:00:00 > 2001-03-05 17:00:00", "2001-03-06 08:00:00 > 2001-03-06 17:00:00",
                         "2001-06-20 08:00:00 > 2001-06-20 17:00:00"};
const Shown kNightShown = {"2001-03-05 22:00:00 > 2001-03-06"};

class WholeExpansion : public testing::Test {
 protected:
  void Fill() {
    local_.reset();  // it uses the driver
    local_ = std::make_unique<CalendarDatabase>(nullptr, [this](Driver& inner) -> Driver& {
      driver_ = std::make_unique<FaultyDriver>(inner);
      return *driver_;
    });
    local_->Employee("1001", "DAY");
    local_->Employee("1002", "NIGHT");
    local_->Records("DAY", {{"2001-03-05", "2001-03-06", 800, 1700}, {"2001-06-20", "2001-06-20", 800, 1700}});
    local_->Record("NIGHT", {"2001-03-05", "2001-03-05", 2200, 2400});
    for (const char* calendar : {"DAY", "NIGHT"})
      local_->Execute(std::string("INSERT INTO tscalender VALUES ('") + calendar + "', '1999-01-01', '1999-01-02')");
    failures_.clear();
    driver_->Restart();
  }

  // Returns whether it went on to its end.
  bool Expand() {
    clsCalender calender = local_->Calender();
    calender.CalendarFailed = [this](const Error& failure) { failures_.push_back(DescribeChain(failure)); };
    try {
      calender.Startprocess();
      return true;
    } catch (const Error& error) {
      failures_.push_back(DescribeChain(error));
      return false;
    }
  }

  std::unique_ptr<FaultyDriver> driver_;
  std::unique_ptr<CalendarDatabase> local_;
  std::vector<std::string> failures_;
};

TEST_F(WholeExpansion, MakesTheSameIntervals) {
  Fill();
  EXPECT_TRUE(Expand());
  EXPECT_EQ(local_->Intervals("DAY"), kDayShown);
  EXPECT_EQ(local_->Intervals("NIGHT"), kNightShown);
  EXPECT_THAT(failures_, IsEmpty());
  EXPECT_EQ(driver_->CountOf("Begin"), 2);
}

TEST_F(WholeExpansion, TellsACalendarThatFailedAndGoesOnWithTheNext) {
  Fill();
  local_->Execute(
      "create trigger no_june before insert on tscalender when new.ccal = 'DAY' and new.sttm > '2001-06' "
      "begin select raise(abort, 'no June'); end");
  EXPECT_TRUE(Expand());
  EXPECT_EQ(local_->Intervals("DAY"), kOldShown);
  EXPECT_EQ(local_->Intervals("NIGHT"), kNightShown);
  ASSERT_THAT(failures_, SizeIs(1));
  EXPECT_THAT(failures_[0], AllOf(HasSubstr("no June"), HasSubstr("calendar: DAY")));
}

TEST_F(WholeExpansion, LeavesTheOldIntervalsWhereTheDeleteFails) {
  Fill();
  local_->Execute(
      "create trigger keep before delete on tscalender when old.ccal = 'DAY' begin select raise(abort, 'kept'); end");
  EXPECT_TRUE(Expand());
  EXPECT_EQ(local_->Intervals("DAY"), kOldShown);
  EXPECT_EQ(local_->Intervals("NIGHT"), kNightShown);
  EXPECT_THAT(failures_, ElementsAre(HasSubstr("kept")));
}

// As without whole mode, such a record ends the expansion.
TEST_F(WholeExpansion, EndsAtARecordWithoutAnEndAndLeavesThatCalendarAsItWas) {
  Fill();
  local_->Execute("update tcccp030 set endt = null where ccal = 'DAY'");
  EXPECT_FALSE(Expand());
  EXPECT_EQ(local_->Intervals("DAY"), kOldShown);
  EXPECT_EQ(local_->Intervals("NIGHT"), kOldShown);
  EXPECT_THAT(failures_, ElementsAre(HasSubstr("calendar: DAY")));
}

TEST_F(WholeExpansion, LeavesEachCalendarOldOrNewWhicheverOperationFails) {
  for (const FaultKind kind : {FaultKind::Before, FaultKind::After, FaultKind::TakenBack}) {
    std::set<Shown> seen;
    std::int64_t failing = 1;
    for (;; ++failing) {
      SCOPED_TRACE(NameOf(kind) + " at " + std::to_string(failing));
      ASSERT_LT(failing, 500);
      Fill();
      driver_->FailAs(kind);
      if (kind == FaultKind::TakenBack) driver_->FailOnly("Commit");
      driver_->FailAt(failing);
      Expand();
      if (!driver_->HasFailed()) break;
      driver_->FailOnly("");
      driver_->FailAt(0);
      local_->Reopen();
      EXPECT_THAT(local_->Intervals("DAY"), AnyOf(kOldShown, kDayShown));
      EXPECT_THAT(local_->Intervals("NIGHT"), AnyOf(kOldShown, kNightShown));
      seen.insert(local_->Intervals("DAY"));
      if (HasFailure()) return;
    }
    EXPECT_GT(failing, kind == FaultKind::TakenBack ? 2 : 30);
    EXPECT_THAT(seen, SizeIs(2));
  }
}

}  // namespace
}  // namespace qmx::test
