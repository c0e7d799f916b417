// The built-in date object against the real one of a Java installation, over random call sequences. Skipped where
// there is none. Java runs in UTC, where no daylight saving shifts an hour.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <sstream>

#include "platform/components.h"
#include "platform/components/date_object.h"
#include "tests/support/fake_clock.h"
#include "tests/support/missing.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

constexpr const char* kFields[] = {"Year", "Month", "Date", "Hours", "Minutes", "Seconds"};

class RandomCalls {
 public:
  // A line for the oracle: mostly usual values, some that carry, a few far off. It begins on a day that every year has.
  std::string Line(int low, int high) {
    std::ostringstream line;
    line << "at " << Between(low, high) << ' ' << Between(0, 11) << ' ' << Between(15, 28) << ' ' << Between(0, 23)
         << ' ' << Between(0, 59) << ' ' << Between(0, 59);
    const int calls = Between(1, 12);
    for (int i = 0; i < calls; ++i) {
      const int field = Between(0, 5);
      if (Between(0, 4) == 0) {
        line << " get" << kFields[field];
      } else {
        line << " set" << kFields[field] << ' ' << (field == 0 ? Between(low, high) : Value(field));
      }
    }
    for (const char* const field : kFields) line << " get" << field;
    return line.str();
  }

 private:
  int Between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
  int Value(int field) {
    static constexpr int kUsual[][2] = {{0, 0}, {0, 11}, {1, 31}, {0, 23}, {0, 59}, {0, 59}};
    switch (Between(0, 9)) {
      case 0:
        return Between(-100000, 100000) / (field == 1 ? 500 : 1);
      case 1:
      case 2:
        return Between(-400, 400) / (field == 1 ? 10 : 1);
      default:
        return Between(kUsual[field][0], kUsual[field][1]);
    }
  }
  std::mt19937 random_{20261120};
};

// The same line on the built-in object.
std::string Answer(const std::string& line) {
  std::istringstream words(line);
  std::ostringstream out;
  FakeClock clock;
  Object date;
  std::string call;
  while (words >> call) {
    if (call == "at") {
      int part[6];
      for (int& value : part) words >> value;
      clock.now = DateTime::FromDate(part[0] + 1900, part[1] + 1, part[2]).PlusTime(part[3], part[4], part[5]);
      date = MakeDateObject(clock);
    } else if (call.starts_with("set")) {
      int value = 0;
      words >> value;
      date.Call(std::string_view(call), value);
    } else {
      out << date.Call(std::string_view(call)).ToText() << ' ';
    }
  }
  return out.str();
}

void Compare(int low, int high, int sequences) {
  if (std::system("java --version >/dev/null 2>&1") != 0) {
    return Missing("No Java is installed (default-jdk-headless), so there is no real date object to compare.");
  }
  TempFolder folder;
  RandomCalls calls;
  std::vector<std::string> lines;
  std::string questions;
  for (int i = 0; i < sequences; ++i) {
    lines.push_back(calls.Line(low, high));
    questions += lines.back() + "\n";
  }
  WriteFile(folder / "questions", questions);
  const std::string command = "java -Duser.timezone=UTC " TEST_ORACLE " <" + (folder / "questions") + " >" +
                              (folder / "answers") + " 2>" + (folder / "errors");
  ASSERT_EQ(std::system(command.c_str()), 0) << ReadFile(folder / "errors");

  std::istringstream answers(ReadFile(folder / "answers"));
  for (const std::string& line : lines) {
    std::string expected;
    ASSERT_TRUE(std::getline(answers, expected)) << "too few answers";
    ASSERT_EQ(Answer(line), expected) << line;
  }
}

TEST(TheBuiltInDate, DoesWhatTheRealOneDoes) { Compare(-50, 250, 4000); }

TEST(TheBuiltInDate, DoesWhatTheRealOneDoesAroundTheChangeOfCalendars) { Compare(-321, -315, 4000); }

TEST(TheBuiltInDate, DoesWhatTheRealOneDoesFarAway) { Compare(-1400, 7000, 2000); }

}  // namespace
}  // namespace qmx::test
