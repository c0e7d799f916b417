#include "tools/qmxadmin/calendar/svg.h"

#include <fmt/format.h>

#include <algorithm>

namespace qmx {
namespace {

// In pixels.
constexpr double kWidth = 1000;
constexpr double kMargin = 36;
constexpr double kLeft = 128;  // where the hours begin
constexpr double kHour = 32;
constexpr double kRight = kLeft + 24 * kHour;
constexpr double kRow = 30;
constexpr double kWeekHead = 50;  // its title and the hours
constexpr double kWeekGap = 30;
constexpr double kTitle = 66;
constexpr double kRemark = 18;
constexpr double kLane = 20;   // the least height of one of several overlapping blocks
constexpr double kTimes = 78;  // the width of a block's times
constexpr double kGap = 4;     // above and below the blocks of a row

constexpr const char* kStyle = R"(  <style>
    text { font-family: "DejaVu Sans", Verdana, "Segoe UI", Helvetica, Arial, sans-serif; fill: #22313c; }
    .title { font-size: 22px; font-weight: bold; }
    .subtitle { font-size: 13px; fill: #5c6f7c; }
    .week { font-size: 14px; font-weight: bold; }
    .hour { font-size: 10px; fill: #7b8c98; text-anchor: middle; }
    .day { font-size: 12px; }
    .free { fill: #8a99a4; }
    .total { font-size: 12px; text-anchor: end; }
    .sum { font-size: 14px; font-weight: bold; text-anchor: end; }
    .times { font-size: 11px; fill: #ffffff; text-anchor: middle; }
    .beside { font-size: 10px; fill: #2f6f8f; }
    .before { text-anchor: end; }
    .remark { font-size: 11px; fill: #8a5a00; }
    .weekend { fill: #f1f4f6; }
    .grid { stroke: #e3e9ed; }
    .mark { stroke: #c9d4db; }
    .frame { fill: none; stroke: #c9d4db; }
    .block { fill: #2f6f8f; }
    .other { fill: #c07a1e; }
  </style>
)";

std::string Number(double value) {
  const std::string text = fmt::format("{:.1f}", value);
  return text.ends_with(".0") ? text.substr(0, text.size() - 2) : text;
}

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char unit : text) {
    switch (unit) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      default:  // XML allows no other control character
        escaped += static_cast<unsigned char>(unit) < ' ' ? ' ' : unit;
    }
  }
  return escaped;
}

std::string Text(const char* style, double x, double y, const std::string& text) {
  return fmt::format("  <text class=\"{}\" x=\"{}\" y=\"{}\">{}</text>\n", style, Number(x), Number(y), Escaped(text));
}

std::string Rectangle(const char* style, double x, double y, double width, double height) {
  return fmt::format("  <rect class=\"{}\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"/>\n", style, Number(x),
                     Number(y), Number(width), Number(height));
}

std::string Line(const char* style, double fromX, double fromY, double toX, double toY) {
  return fmt::format("  <line class=\"{}\" x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\"/>\n", style, Number(fromX),
                     Number(fromY), Number(toX), Number(toY));
}

double At(int minute) { return kLeft + minute * kHour / 60; }

double RowHeight(const Day& day) { return std::max(kRow, day.lanes * kLane + 2 * kGap); }

double Height(const Week& week) {
  double height = kWeekHead;
  for (const Day& day : week.days) height += RowHeight(day);
  return height;
}

// The corners are round where the interval begins and ends, and square where it continues over midnight.
std::string Bar(const Block& block, double y, double height) {
  const char* const style = block.lane == 0 ? "block" : "other";
  const double from = At(block.from), width = At(block.to) - from;
  const double radius = std::min({5.0, width / 2, height / 2});
  std::string svg = fmt::format(
      "  <rect class=\"{}\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" rx=\"{}\"><title>{} to {}</title></rect>\n",
      style, Number(from), Number(y), Number(width), Number(height), Number(radius), block.whole.from.ToText(),
      block.whole.to.ToText());
  if (block.from == 0 && MinuteOf(block.whole.from) > 0) svg += Rectangle(style, from, y, radius, height);
  if (block.to == kMinutesPerDay && MinuteOf(block.whole.to) > 0)
    svg += Rectangle(style, from + width - radius, y, radius, height);
  return svg;
}

// Draws the times in the block, or beside it if there is room, or not at all.
std::string DrawTimes(const Day& day, std::size_t index, double y) {
  const Block& block = day.blocks[index];
  const double from = At(block.from), to = At(block.to);
  const std::string times = SpanText(block.whole);
  if (to - from >= kTimes) return Text("times", (from + to) / 2, y, times);
  if (day.lanes > 1) return {};
  const double after = index + 1 < day.blocks.size() ? At(day.blocks[index + 1].from) : kRight;
  if (after - to >= kTimes) return Text("beside", to + 5, y, times);
  const double before = index > 0 ? At(day.blocks[index - 1].to) + kTimes : kLeft;
  if (from - before >= kTimes) return Text("beside before", from - 5, y, times);
  return {};
}

std::string DrawDay(const Day& day, double y) {
  const double height = RowHeight(day);
  const double middle = y + height / 2 + 4;
  std::string svg = Text(day.blocks.empty() ? "day free" : "day", kMargin + 8, middle, DayTitle(day.date));
  for (std::size_t index = 0; index < day.blocks.size(); ++index) {
    const double lane = (height - 2 * kGap) / day.lanes;
    const double laneY = y + kGap + day.blocks[index].lane * lane;
    svg += Bar(day.blocks[index], laneY, lane - (day.lanes > 1 ? 1 : 0));
    svg += DrawTimes(day, index, laneY + lane / 2 + 4);
  }
  if (day.minutes > 0) svg += Text("total", kWidth - kMargin - 8, middle, DurationText(day.minutes));
  return svg;
}

std::string DrawWeek(const Week& week, double y) {
  const double top = y + kWeekHead;
  const double bottom = y + Height(week);
  const double end = kWidth - kMargin;
  const double weekend = bottom - RowHeight(week.days[5]) - RowHeight(week.days[6]);
  std::string svg = Text("week", kMargin, y + 20, WeekTitle(week.Monday()));
  svg += week.minutes > 0 ? Text("sum", end, y + 20, DurationText(week.minutes))
                          : Text("total free", end, y + 20, "no working time");
  svg += Rectangle("weekend", kMargin, weekend, end - kMargin, bottom - weekend);
  for (int hour = 0; hour <= 24; ++hour) {
    const double x = At(hour * 60);
    svg += Line(hour % 6 == 0 ? "mark" : "grid", x, top, x, bottom);
    if (hour % 2 == 0) svg += Text("hour", x, top - 6, std::to_string(hour));
  }
  double rowY = top;
  for (const Day& day : week.days) {
    if (rowY > top) svg += Line("grid", kMargin, rowY, end, rowY);
    svg += DrawDay(day, rowY);
    rowY += RowHeight(day);
  }
  return svg + Rectangle("frame", kMargin, top, end - kMargin, bottom - top);
}

double Height(const CalendarPicture& picture) {
  double height = kTitle + static_cast<double>(picture.weeks.remarks.size()) * kRemark;
  for (const Week& week : picture.weeks.weeks) height += Height(week) + kWeekGap;
  return height;
}

std::string Draw(const CalendarPicture& picture, double y) {
  std::string svg =
      Text("title", kMargin, y + 24, picture.Title()) + Text("subtitle", kMargin, y + 46, picture.Subtitle());
  y += kTitle;
  for (const Week& week : picture.weeks.weeks) {
    svg += DrawWeek(week, y);
    y += Height(week) + kWeekGap;
  }
  for (const std::string& remark : picture.weeks.remarks) {
    svg += Text("remark", kMargin, y, remark);
    y += kRemark;
  }
  return svg;
}

}  // namespace

std::string SvgPicture(const std::vector<CalendarPicture>& pictures) {
  double height = 2 * kMargin - kWeekGap;
  for (const CalendarPicture& picture : pictures) height += Height(picture);
  std::string svg = fmt::format(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}\" height=\"{1}\" viewBox=\"0 0 {0} {1}\">\n"
      "  <title>Working intervals</title>\n{2}  <rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n",
      Number(kWidth), Number(height), kStyle);
  double y = kMargin;
  for (const CalendarPicture& picture : pictures) {
    svg += Draw(picture, y);
    y += Height(picture);
  }
  return svg + "</svg>\n";
}

}  // namespace qmx
