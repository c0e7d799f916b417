#include "tools/qmxadmin/copy/live_lines.h"

#include <fmt/format.h>

#include "platform/system/descriptors.h"
#include "platform/system/terminal.h"
#include "platform/system/write_all.h"
#include "tools/qmxadmin/text_width.h"

namespace qmx {

LiveLines::LiveLines(bool quiet) : isLive_(!quiet && IsLiveTerminal(kStandardError)) {}

void LiveLines::Print(const std::string& line) {
  Clear();
  WriteAll(kStandardError, Printable(line) + "\n");
}

void LiveLines::Draw(const std::vector<std::string>& lines, Clock::time_point now) {
  if (lines.empty()) return Clear();
  if (!isLive_ || !IsInForeground(kStandardError)) return;
  if (!drawn_.empty() && now - drawnAt_ < kBetweenDrawings) return;
  const int width = TerminalWidth(kStandardError);
  std::vector<std::string> cut;
  for (const std::string& line : lines) cut.push_back(CutToWidth(line, width - 1));
  if (cut == drawn_ && width == drawnWidth_) return;
  std::string text = ClearText(width);
  for (const std::string& line : cut) text += line + "\n";
  WriteAll(kStandardError, text);
  drawn_ = std::move(cut);
  drawnWidth_ = width;
  drawnAt_ = now;
}

void LiveLines::Clear() {
  if (drawn_.empty() || !IsInForeground(kStandardError)) return;
  WriteAll(kStandardError, ClearText(TerminalWidth(kStandardError)));
  drawn_.clear();
}

std::string LiveLines::ClearText(int terminalWidth) const {
  int rows = 0;
  for (const std::string& line : drawn_) rows += RowsTaken(TextWidth(line), terminalWidth);
  return rows > 0 ? fmt::format("\x1b[{}A\r\x1b[J", rows) : "\r\x1b[J";
}

}  // namespace qmx
