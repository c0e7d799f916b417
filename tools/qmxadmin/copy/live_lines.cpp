#include "tools/qmxadmin/copy/live_lines.h"

#include <unistd.h>

#include "platform/progress/terminal.h"
#include "platform/write_all.h"
#include "tools/qmxadmin/text_width.h"

namespace qmx {

LiveLines::LiveLines() : isLive_(IsLiveTerminal(STDERR_FILENO)) {}

void LiveLines::Say(const std::string& line) {
  Draw({});
  WriteAll(STDERR_FILENO, Printable(line) + "\n");
}

void LiveLines::Draw(const std::vector<std::string>& lines) {
  if (!isLive_ || (lines.empty() && drawn_ == 0) || !IsInForeground(STDERR_FILENO)) return;
  std::string text = drawn_ > 0 ? "\x1b[" + std::to_string(drawn_) + "A" : "";
  text += "\r\x1b[J";
  const int width = TerminalWidth(STDERR_FILENO) - 1;
  for (const std::string& line : lines) text += CutToWidth(line, width) + "\n";
  WriteAll(STDERR_FILENO, text);
  drawn_ = lines.size();
}

}  // namespace qmx
