// The built-in date object: what the fields of a java.util.Date would be. The oracle computes them from the rules of
// the two calendars. At the start it and the product must give a JDK's answers to the questions of java_dates.txt.
#include "platform/components/date_object.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <fstream>
#include <sstream>

#include "fuzz/input.h"
#include "fuzz/plain_dates.h"
#include "fuzz/raised.h"
#include "fuzz/require.h"
#include "platform/components.h"
#include "tests/support/fake_clock.h"

namespace qmx::fuzz {
namespace {

constexpr std::int64_t kLastYear = 200'000'000;
enum Field : std::size_t { kYear, kMonth, kDay, kHours, kMinutes, kSeconds };
constexpr std::array<const char*, 6> kNames = {"Year", "Month", "Date", "Hours", "Minutes", "Seconds"};

void Set(PlainDate& date, std::size_t field, std::int64_t value) {
  if (field == kYear) date.day.year = value + 1900;
  if (field == kMonth) date.SetMonth(value);
  if (field == kDay) date.day.day = value;
  if (field == kHours) date.hour = value;
  if (field == kMinutes) date.minute = value;
  if (field == kSeconds) date.second = value;
}

// Nothing for a year outside the range; the fields stay unchanged then.
std::optional<std::int64_t> Get(PlainDate& date, std::size_t field) {
  PlainDate resolved = date;
  resolved.Resolve();
  if (resolved.day.year < 1 || resolved.day.year > kLastYear) return std::nullopt;
  date = resolved;
  const std::array<std::int64_t, 6> values = {date.day.year - 1900, date.day.month, date.day.day, date.hour,
                                              date.minute,          date.second};
  return values[field];
}

// One date object and its oracle.
class Dates {
 public:
  explicit Dates(DateTime moment)
      : clock_(moment),
        object_(MakeDateObject(clock_)),
        plain_{{moment.Year(), moment.Month() - 1, moment.Day()}, moment.Hour(), moment.Minute(), moment.Second()} {}

  void SetBoth(std::size_t field, std::int32_t value) {
    const std::string name = std::string("set") + kNames[field];
    object_.Call(std::string_view(name), value);
    Set(plain_, field, value);
    done_ += ' ' + name + ' ' + std::to_string(value);
  }

  std::string GetBoth(std::size_t field) {
    const std::string name = std::string("get") + kNames[field];
    done_ += ' ' + name;
    std::string answer;
    const std::int32_t raised = NumberRaised([&] { answer = object_.Call(std::string_view(name)).ToText(); });
    const PlainDate before = plain_;
    const std::optional<std::int64_t> expected = Get(plain_, field);
    Require(raised == (expected ? 0 : errors::kOverflow), "whether there is an answer to" + done_);
    if (expected) RequireSame(answer, std::to_string(*expected), "the answer to" + done_);
    if (expected) RequireChrono(before);
    return answer;
  }

 private:
  // The standard library knows the Gregorian calendar.
  void RequireChrono(const PlainDate& before) const {
    namespace chrono = std::chrono;
    if (before.day.year < 1600 || before.day.year > 9999 || plain_.day.year < 1600 || plain_.day.year > 9999) return;
    const auto first = chrono::year(static_cast<int>(before.day.year)) /
                       chrono::month(static_cast<unsigned>(before.day.month + 1)) / 1;
    const auto moment = chrono::sys_days(first) + chrono::days(before.day.day - 1) + chrono::hours(before.hour) +
                        chrono::minutes(before.minute) + chrono::seconds(before.second);
    const chrono::year_month_day day(chrono::floor<chrono::days>(moment));
    const bool isSame = int(day.year()) == plain_.day.year && unsigned(day.month()) == plain_.day.month + 1 &&
                        unsigned(day.day()) == plain_.day.day;
    Require(isSame, "the day of" + done_ + " by std::chrono");
  }

  test::FakeClock clock_;
  Object object_;
  PlainDate plain_;
  std::string done_;
};

std::size_t FieldOf(const std::string& call) {
  for (std::size_t field = 0; field < kNames.size(); ++field) {
    if (call.substr(3) == kNames[field]) return field;
  }
  Fail("java_dates.txt has the unknown call " + call);
}

void AnswerAsTheJdk() {
  std::ifstream table(QMX_JAVA_DATES);
  int questions = 0;
  for (std::string line; std::getline(table, line);) {
    if (line.starts_with("#")) continue;
    std::istringstream words(line);
    std::string call, answers;
    std::array<int, 6> part{};
    words >> call;
    for (int& value : part) words >> value;
    Dates dates(DateTime::FromDate(part[0] + 1900, part[1] + 1, part[2]).PlusTime(part[3], part[4], part[5]));
    while (words >> call && call != "->") {
      int value = 0;
      if (call.starts_with("set")) {
        words >> value;
        dates.SetBoth(FieldOf(call), value);
      } else {
        answers += ' ' + dates.GetBoth(FieldOf(call));
      }
    }
    RequireSame(" ->" + answers, line.substr(line.find(" -> ")), "the answers to " + line);
    ++questions;
  }
  Require(questions > 500, "java_dates.txt has many questions");
}

// Mostly usual values, some that carry, a few far off.
std::int32_t Value(Input& input, std::size_t field) {
  constexpr std::array<std::int32_t, 6> kUsual = {250, 12, 32, 24, 60, 60};
  switch (input.Below(8)) {
    case 0:
      return input.Next<std::int32_t>();
    case 1:
      return input.Next<std::int16_t>();
    case 2:
      return field == kYear ? static_cast<std::int32_t>(input.Below(3)) - 319 : input.Next<std::int8_t>();
    default:
      return input.Next<std::uint8_t>() % kUsual[field];
  }
}

void RefuseWhatIsNoCallOfADate(Input& input) {
  test::FakeClock clock;
  const Object date = MakeDateObject(clock);
  const std::string member = input.Text(12);
  const std::int32_t raised = NumberRaised([&] { date.Call(std::string_view(member), 1, 2); });
  const auto lower = [](std::string text) {
    for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return text;
  };
  bool isKnown = false;
  for (const std::string name : kNames) {
    isKnown = isKnown || lower(member) == lower("get" + name) || lower(member) == lower("set" + name);
  }
  Require(raised == (isKnown ? errors::kWrongArgumentCount : errors::kNoSuchMember), "the error of " + Shown(member));
}

}  // namespace
}  // namespace qmx::fuzz

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  qmx::fuzz::AnswerAsTheJdk();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmx::fuzz;
  Input input(data, size);
  const qmx::DateTime day = qmx::DateTime::FromDate(100 + input.Next<std::uint16_t>() % 9800, 1, 1);
  Dates dates(day.PlusDays(input.Next<std::uint16_t>() % 366).PlusTime(0, 0, input.Next<std::uint32_t>() % 86400));
  constexpr int kMostCalls = 40;
  for (int i = 0; i < kMostCalls && !input.IsAtEnd(); ++i) {
    const std::size_t call = input.Below(13);
    if (call == 12) RefuseWhatIsNoCallOfADate(input);
    if (call < 6) dates.GetBoth(call);
    if (call >= 6 && call < 12) dates.SetBoth(call - 6, Value(input, call - 6));
  }
  for (std::size_t field = 0; field < kNames.size(); ++field) dates.GetBoth(field);
  return 0;
}
