#include "tools/qmxadmin/calendar/picture.h"

#include <fmt/format.h>

#include <algorithm>

#include "tools/qmxadmin/text_width.h"

namespace qmx {
namespace {

constexpr int kLabelColumns = 12;  // "Mon 23 Nov  "
constexpr int kTotalColumns = 8;   // "   8:00 "
constexpr int kTimesColumns = 13;  // "  08:00–12:00"

constexpr const char* kShades[] = {"░", "▒", "▓", "█"};

std::string LeftAligned(const std::string& text, int width) {
  return text + std::string(static_cast<std::size_t>(std::max(0, width - TextWidth(text))), ' ');
}

std::string RightAligned(const std::string& text, int width) {
  return std::string(static_cast<std::size_t>(std::max(0, width - TextWidth(text))), ' ') + text;
}

// Returns the number of cells per day: the finest scale that leaves room for the times on the right.
int CellsFor(int columns) {
  for (const int cells : {96, 72, 48}) {
    if (columns >= kLabelColumns + cells + kTotalColumns + kTimesColumns - 1) return cells;
  }
  return 24;
}

int HoursPerMark(int cells) { return cells >= 48 ? 3 : 6; }

std::string Axis(int cells) {
  std::string line(kLabelColumns, ' ');
  for (int hour = 0; hour <= 24; hour += HoursPerMark(cells)) {
    line = LeftAligned(line, kLabelColumns + hour * cells / 24) + std::to_string(hour);
  }
  return line;
}

// Returns the minutes worked between `from` and `to`. Overlapping blocks count once.
int Worked(const Day& day, int from, int to) {
  int minutes = 0;
  int covered = from;
  for (const Block& block : day.blocks) {
    const int end = std::min(block.to, to);
    minutes += std::max(0, end - std::max(block.from, covered));
    covered = std::max(covered, end);
  }
  return minutes;
}

std::string Cell(const Day& day, int cell, int cells) {
  const int length = kMinutesPerDay / cells;
  const int worked = Worked(day, cell * length, (cell + 1) * length);
  if (worked > 0) return kShades[std::max(0, (worked * 4 + length - 1) / length - 1)];
  return cell * 24 % (HoursPerMark(cells) * cells) == 0 ? "·" : " ";
}

std::string Times(const Day& day, int columns) {
  std::string text;
  for (const Block& block : day.blocks) {
    const std::string next = (text.empty() ? "" : " ") + SpanText(block.whole);
    const bool isLast = &block == &day.blocks.back();
    if (TextWidth(text) + TextWidth(next) + (isLast ? 0 : 2) > columns) return text + (text.empty() ? "" : " …");
    text += next;
  }
  return text;
}

std::string WithoutTrailingBlanks(std::string line) {
  line.resize(line.find_last_not_of(' ') + 1);
  return line;
}

std::string DayLine(const Day& day, int cells, int columns) {
  std::string line = LeftAligned(DayTitle(day.date), kLabelColumns);
  for (int cell = 0; cell < cells; ++cell) line += Cell(day, cell, cells);
  line += "·" + RightAligned(day.minutes > 0 ? DurationText(day.minutes) : "", kTotalColumns - 2);
  return WithoutTrailingBlanks(line + "  " + Times(day, columns - TextWidth(line) - 2));
}

}  // namespace

std::string CalendarPicture::Title() const { return "Calendar " + code; }

std::string CalendarPicture::Subtitle() const {
  const DateTime first = weeks.weeks.front().Monday();
  const DateTime last = weeks.weeks.back().Monday().PlusDays(6);
  const std::string who = employee + (name.empty() ? "" : ", " + name);
  return (employee.empty() ? "" : "Employee " + who + " · ") + PeriodText(first, last) + " · " +
         DurationText(weeks.minutes) + " hours";
}

std::string TerminalPicture(const CalendarPicture& picture, int columns) {
  const int cells = CellsFor(columns);
  const int width = kLabelColumns + cells + kTotalColumns - 1;
  std::string text = picture.Title() + "\n" + picture.Subtitle() + "\n";
  for (const Week& week : picture.weeks.weeks) {
    const std::string total = week.minutes > 0 ? DurationText(week.minutes) : "no working time";
    const std::string title = WeekTitle(week.Monday());
    text += "\n" + title + RightAligned(total, std::max(width - TextWidth(title), TextWidth(total) + 1)) + "\n" +
            Axis(cells) + "\n";
    for (const Day& day : week.days) text += DayLine(day, cells, columns) + "\n";
  }
  if (!picture.weeks.remarks.empty()) text += "\n";
  for (const std::string& remark : picture.weeks.remarks) text += remark + "\n";
  return text;
}

}  // namespace qmx
