#include "tools/qmxadmin/calendar/picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/golden.h"
#include "tests/tools/qmxadmin/calendar/intervals.h"
#include "tools/qmxadmin/calendar/svg.h"
#include "tools/qmxadmin/text_width.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;
using testing::Not;

CalendarPicture EveryKind() {
  return {"CAL007", "E00001", "Jane Doe", WeeksOf(EveryKindOfDay(), At("2026-11-23"), At("2026-12-13"))};
}

CalendarPicture Empty() { return {"NIGHT", "", "", WeeksOf({}, At("2026-11-23"), At("2026-11-23"))}; }

TEST(ACalendarInTheTerminal, LooksAsItIsKept) {
  ExpectGolden(GOLDEN_FOLDER "80_columns.txt", TerminalPicture(EveryKind(), 80));
  ExpectGolden(GOLDEN_FOLDER "130_columns.txt", TerminalPicture(EveryKind(), 130));
  ExpectGolden(GOLDEN_FOLDER "50_columns.txt", TerminalPicture(EveryKind(), 50));
}

TEST(ACalendarInTheTerminal, IsNoWiderThanTheTerminal) {
  CalendarPicture picture = EveryKind();
  picture.weeks.remarks.clear();  // sentences, which the terminal wraps
  picture.employee.clear();
  for (int columns = 58; columns <= 200; ++columns) {
    std::istringstream lines(TerminalPicture(picture, columns));
    for (std::string line; std::getline(lines, line);) EXPECT_LE(TextWidth(line), columns) << line;
  }
}

TEST(ACalendarInTheTerminal, SaysThatAWeekHasNoWorkingTime) {
  EXPECT_EQ(TerminalPicture(Empty(), 60),
            "Calendar NIGHT\n"
            "23 – 29 November 2026 · 0:00 hours\n"
            "\n"
            "Week 48 · 23 – 29 November 2026 no working time\n"
            "            0     6     12    18    24\n"
            "Mon 23 Nov  ·     ·     ·     ·     ·\n"
            "Tue 24 Nov  ·     ·     ·     ·     ·\n"
            "Wed 25 Nov  ·     ·     ·     ·     ·\n"
            "Thu 26 Nov  ·     ·     ·     ·     ·\n"
            "Fri 27 Nov  ·     ·     ·     ·     ·\n"
            "Sat 28 Nov  ·     ·     ·     ·     ·\n"
            "Sun 29 Nov  ·     ·     ·     ·     ·\n");
}

TEST(ACalendarInTheTerminal, ShadesACellByHowMuchOfItIsWorked) {
  const auto cellsOf = [](const char* to) {
    const CalendarPicture picture{"C", "", "",
                                  WeeksOf({From("2026-11-23 00:00", to)}, At("2026-11-23"), At("2026-11-23"))};
    const std::string text = TerminalPicture(picture, 50);
    return text.substr(text.find("Mon 23 Nov") + 12, 10);
  };
  EXPECT_EQ(cellsOf("2026-11-23 00:01"), "░     ·");
  EXPECT_EQ(cellsOf("2026-11-23 00:15"), "░     ·");
  EXPECT_EQ(cellsOf("2026-11-23 00:16"), "▒     ·");
  EXPECT_EQ(cellsOf("2026-11-23 00:45"), "▓     ·");
  EXPECT_EQ(cellsOf("2026-11-23 00:46"), "█     ·");
}

TEST(ACalendarAsSvg, LooksAsItIsKept) { ExpectGolden(GOLDEN_FOLDER "calendar.svg", SvgPicture({EveryKind()})); }

TEST(ACalendarAsSvg, StandsAboveTheNextOne) {
  ExpectGolden(GOLDEN_FOLDER "two_calendars.svg", SvgPicture({Empty(), Empty()}));
}

TEST(ACalendarAsSvg, KeepsWhatWouldBeMarkupAsText) {
  CalendarPicture picture = Empty();
  picture.employee = "<E1> & \"sons\"\x01";
  const std::string svg = SvgPicture({picture});
  EXPECT_THAT(svg, HasSubstr("Employee &lt;E1&gt; &amp; \"sons\" "));
  EXPECT_THAT(svg, Not(HasSubstr("\x01")));
}

}  // namespace
}  // namespace qmx::test
