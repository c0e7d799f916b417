// The whole expansion of calendars: the rows that a plain model makes of the same records, in the same order. In one
// transaction for each calendar the rows are the same, and a calendar that ends in an error keeps its old ones.
#include <cstdint>

#include "calendar/clsCalender.h"
#include "fuzz/input.h"
#include "fuzz/plain_expansion.h"
#include "fuzz/raised.h"
#include "fuzz/require.h"
#include "tests/calendar/calendar_database.h"

namespace qmx::fuzz {
namespace {

constexpr int kMostRecords = 12;
const std::vector<std::string> kCalendars = {"C0", "C1"};
constexpr const char* kOldRow = "1999-01-01 > 1999-01-02\n";  // of each calendar

std::int32_t Time(Input& input) {
  const auto byte = input.Next<std::uint8_t>();
  return byte < 250 ? byte / 10 * 100 + byte % 10 * 10 : input.Next<std::int32_t>() % 40000;
}

PlainRecord Choose(Input& input) {
  PlainRecord record;
  record.ccal = "C" + std::to_string(input.Below(2));
  record.start = DateTime::FromDate(2026, 1, 1).PlusDays(input.Next<std::uint16_t>() % 400);
  record.end = record.start.PlusDays(input.Next<std::int8_t>() % 40);
  if (input.Chance(10)) record.start = record.start.PlusTime(input.Next<std::int8_t>(), 0, 0);
  if (input.Chance(10)) record.end = record.end.PlusTime(0, input.Next<std::int16_t>(), 0);
  record.hasEnd = !input.Chance(3);
  record.sttm = Time(input);
  record.entm = Time(input);
  return record;
}

void Add(test::CalendarDatabase& database, const PlainRecord& record) {
  database.Execute("insert into tcccp030 (ccal, ract, stdt, sttm, endt, entm) values ('" + record.ccal + "', 'W', '" +
                   record.start.ToFullText() + "', " + std::to_string(record.sttm) + ", " +
                   (record.hasEnd ? "'" + record.end.ToFullText() + "'" : std::string("null")) + ", " +
                   std::to_string(record.entm) + ")");
}

test::CalendarDatabase& EmptyDatabase() {
  static test::CalendarDatabase& database = []() -> test::CalendarDatabase& {
    auto& made = *new test::CalendarDatabase({}, {}, test::Calls::NotLogged);
    made.Employee("E0", "C0");
    made.Employee("E1", "C1");
    return made;
  }();
  database.Execute("delete from tcccp030");
  return database;
}

// Expands as the operator's tool does, in the usual way or each calendar in one transaction.
void ExpandsAsExpected(test::CalendarDatabase& database, const PlainExpansion& expected, bool isWhole) {
  database.Execute("delete from tscalender");
  for (const std::string& ccal : kCalendars) {
    database.Execute("insert into tscalender values ('" + ccal + "', '1999-01-01 00:00:00', '1999-01-02 00:00:00')");
  }
  const std::string way = isWhole ? " in one transaction" : "";
  clsCalender calender = database.Calender();
  if (isWhole) {
    calender.CalendarFailed = [](const Error& failure) { Fail("a calendar failed: " + DescribeChain(failure)); };
  }
  const std::optional<Error> error = Raised([&] { calender.Startprocess(); });
  if (error && database.recordset().State() != kStateClosed) database.recordset().Close();
  RequireSame(std::to_string(error ? error->Number() : 0), std::to_string(expected.error), "the error" + way);
  for (const std::string& ccal : kCalendars) {
    const bool isFailed = expected.error != 0 && calender.Calcode == ccal;
    const bool keepsOld = !expected.begun.contains(ccal) || (isWhole && isFailed);
    std::string made;
    for (const std::string& interval : database.Intervals(ccal)) made += interval + "\n";
    RequireSame(made, keepsOld ? kOldRow : expected.rows.at(ccal), "the intervals of " + ccal + way);
  }
}

}  // namespace
}  // namespace qmx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmx::fuzz;
  qmx::test::CalendarDatabase& database = EmptyDatabase();
  Input input(data, size);
  std::vector<PlainRecord> records;
  for (int i = 0; i < kMostRecords && !input.IsAtEnd(); ++i) {
    records.push_back(Choose(input));
    Add(database, records.back());
  }
  std::vector<std::string> inUse;
  database.Calender().getEmployeeCalenderList(database.connection(), inUse);
  Require(inUse == kCalendars, "the calendars in use");
  const PlainExpansion expected = ExpandPlainly(kCalendars, records);
  for (const bool isWhole : {false, true}) ExpandsAsExpected(database, expected, isWhole);
  return 0;
}
