#include "tools/qmxadmin/copy/live_lines.h"

#include <fmt/format.h>
#include <unistd.h>

#include "platform/system/terminal.h"
#include "platform/system/write_all.h"
#include "tools/qmxadmin/text_width.h"

namespace qmx {

LiveLines::LiveLines(bool quiet) : isLive_(!quiet && IsLiveTerminal(STDERR_FILENO)) {}

void LiveLines::Print(const std::string& line) {
  Clear();
  WriteAll(STDERR_FILENO, Printable(line) + "\n");
}

void LiveLines::Draw(const std::vector<std::string>& lines, Clock::time_point now) {
  if (lines.empty()) return Clear();
  if (!isLive_ || !IsInForeground(STDERR_FILENO)) return;
  if (!drawn_.empty() && now - drawnAt_ < kBetweenDrawings) return;
  const int width = TerminalWidth(STDERR_FILENO);
  std::vector<std::string> cut;
  for (const std::string& line : lines) cut.push_back(CutToWidth(line, width - 1));
  if (cut == drawn_ && width == drawnWidth_) return;
  std::string text = ClearText(width);
  for (const std::string& line : cut) text += line + "\n";
  WriteAll(STDERR_FILENO, text);
  drawn_ = std::move(cut);
  drawnWidth_ = width;
  drawnAt_ = now;
}

void LiveLines::Clear() {
  if (drawn_.empty() || !IsInForeground(STDERR_FILENO)) return;
  WriteAll(STDERR_FILENO, ClearText(TerminalWidth(STDERR_FILENO)));
  drawn_.clear();
}

std::string LiveLines::ClearText(int terminalWidth) const {
  int rows = 0;
  for (const std::string& line : drawn_) rows += RowsTaken(TextWidth(line), terminalWidth);
  return rows > 0 ? fmt::format("\x1b[{}A\r\x1b[J", rows) : "\r\x1b[J";
}

}  // namespace qmx
