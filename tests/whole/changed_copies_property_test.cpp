// Whatever the company does, and whenever its changes are copied, the local tables end as after fresh full copies,
// except for the columns that changed copies do not update.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "tests/whole/company.h"
#include "tests/whole/local_copy.h"
#include "tests/whole/not_by_change.h"

namespace qmx::test::changed_copies_property {
namespace {

using testing::IsEmpty;

constexpr int kSecondsOfWork = 9 * 3600;
constexpr int kLookBack = 60;  // days of calendars

class AfterAnyDays : public testing::TestWithParam<unsigned> {
 protected:
  AfterAnyDays() {
    local_.CopyAll();
    local_.ByChange();
  }

  int Between(int low, int high) {  // the same on every machine, unlike the library's distributions
    return low + static_cast<int>(dice_() % static_cast<unsigned>(high - low + 1));
  }

  void Copy(const std::string& table) {
    local_.Copy(table);
    if (table != "tcccp030") return;
    // A calendar that nobody uses any more stays as it is, and is not caught up with when somebody uses it again.
    abandoned_.merge(local_.Values("select ccal from tcccp030 where ccal not in (select ccal from tsmdm140)"));
  }

  std::vector<std::string> DifferencesFromFreshCopies() {
    LocalCopy fresh(company_, clock_);
    fresh.CopyAll();
    std::vector<std::string> all;
    for (const std::string& table : CopiedTables()) {
      const Rows expected = fresh.RowsOf(table, Compared(table));
      Rows rows = local_.RowsOf(table, Compared(table));
      ExcuseColumnsNotByChange(table, rows, expected);
      for (std::string& difference : Differences(table, rows, expected)) all.push_back(std::move(difference));
    }
    return all;
  }

  FakeClock clock_{At(21, 6)};
  Company company_;
  LocalCopy local_{company_, clock_};
  std::mt19937 dice_{GetParam()};

 private:
  std::string Compared(const std::string& table) const {
    if (table != "tcccp030") return "1=1";
    std::string condition = "stdt >= '" + clock_.now.DatePart().PlusDays(-kLookBack).ToText() + "'";
    for (const std::string& calendar : abandoned_) condition += " and ccal <> '" + calendar + "'";
    return condition;
  }

  std::set<std::string> abandoned_;
};

TEST_P(AfterAnyDays, ChangedCopiesMakeTheTablesThatFreshFullCopiesWouldMake) {
  for (int day = 1; day <= 4; ++day) {
    // Work may begin in the very second in which the last copies ended.
    const DateTime begin = clock_.now.PlusTime(0, 0, Between(0, 1));
    company_.Work(dice_(), begin);

    // Some tables are copied while the work goes on, some once more after it.
    for (const std::string& table : CopiedTables()) {
      if (Between(1, 3) > 1) continue;
      clock_.now = begin.PlusTime(0, 0, Between(0, kSecondsOfWork));
      Copy(table);
    }
    clock_.now = begin.PlusTime(0, 0, kSecondsOfWork);
    for (const std::string& table : CopiedTables())
      if (Between(1, 2) == 1) Copy(table);
    clock_.now = clock_.now.PlusTime(0, 0, Between(0, 2) * 40000);
  }
  for (const std::string& table : CopiedTables()) Copy(table);
  EXPECT_THAT(DifferencesFromFreshCopies(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Seeds, AfterAnyDays, testing::Range(5u, 9u));

}  // namespace
}  // namespace qmx::test::changed_copies_property
