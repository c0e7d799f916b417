#include "platform/progress/progress_text.h"

namespace qmx {
namespace {

std::string TwoDigits(std::int64_t number) { return (number < 10 ? "0" : "") + std::to_string(number); }

std::string RightAligned(std::string text, std::size_t width) {
  return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

}  // namespace

std::string CountText(std::int64_t count) {
  std::string text = std::to_string(count);
  const std::size_t first = count < 0 ? 1 : 0;
  for (std::size_t place = text.size(); place > first + 3;) text.insert(place -= 3, ",");
  return text;
}

std::string ElapsedText(std::chrono::seconds duration) {
  const std::int64_t seconds = duration.count();
  const std::int64_t hours = seconds / 3600;
  const std::int64_t minutes = seconds / 60 % 60;
  const std::string minutesText =
      hours > 0 ? std::to_string(hours) + ":" + TwoDigits(minutes) : std::to_string(minutes);
  return minutesText + ":" + TwoDigits(seconds % 60);
}

// The columns keep their places while the numbers grow.
std::string ProgressText(const std::string& table, std::int64_t rows, std::int64_t rowsPerSecond,
                         std::chrono::seconds elapsed) {
  return table + "  " + RightAligned(CountText(rows), 11) + " rows  " + RightAligned(CountText(rowsPerSecond), 9) +
         " rows/s  " + RightAligned(ElapsedText(elapsed), 7);
}

// The time stays in its column.
std::string DeletingText(const std::string& table, std::chrono::seconds elapsed) {
  constexpr std::size_t kRateWidth = 25;
  return table + "  " + RightAligned("deleting", 11) + std::string(kRateWidth, ' ') +
         RightAligned(ElapsedText(elapsed), 7);
}

}  // namespace qmx
