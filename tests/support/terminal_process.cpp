#include "tests/support/terminal_process.h"

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>

#include "tests/support/process.h"

namespace qmx::test {

TerminalProcess::TerminalProcess(const std::string& program, const std::vector<std::string>& arguments,
                                 std::map<std::string, std::string> environment, int columns, int rows) {
  environment.emplace("TERM", "xterm");
  const ProgramToBecome ready(program, arguments, environment);
  winsize size{};
  size.ws_col = static_cast<unsigned short>(columns);
  size.ws_row = static_cast<unsigned short>(rows);
  child_ = forkpty(&terminal_, nullptr, nullptr, &size);
  if (child_ < 0) throw std::runtime_error("cannot run " + program + " on a terminal");
  if (child_ == 0) ready.Become();
}

TerminalProcess::~TerminalProcess() {
  if (!hasEnded_) {
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
  }
  close(terminal_);
}

void TerminalProcess::WaitFor(const std::string& text) {
  while (shown_.find(text) == std::string::npos) {
    if (!Read()) throw std::runtime_error("\"" + text + "\" was never shown, but\n" + shown_);
  }
}

void TerminalProcess::Type(const std::string& keys) {
  if (write(terminal_, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size()))
    throw std::runtime_error("cannot type");
}

void TerminalProcess::Signal(int signal) const { kill(child_, signal); }

TerminalRun TerminalProcess::Wait() {
  while (Read()) continue;
  int state = 0;
  waitpid(child_, &state, 0);
  hasEnded_ = true;
  return {WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state), shown_};
}

bool TerminalProcess::Read() {
  std::array<char, 4096> buffer{};
  const ssize_t count = read(terminal_, buffer.data(), buffer.size());  // fails once nobody has the terminal open
  if (count > 0) shown_.append(buffer.data(), static_cast<std::size_t>(count));
  return count > 0;
}

std::vector<std::string> ScreenAfter(const std::string& shown) {
  std::vector<std::string> lines(1);
  std::size_t row = 0, column = 0;
  for (std::size_t at = 0; at < shown.size(); ++at) {
    const char letter = shown[at];
    if (letter == '\r') {
      column = 0;
    } else if (letter == '\n') {
      column = 0;
      if (++row == lines.size()) lines.emplace_back();
    } else if (letter == '\x1b' && at + 1 < shown.size() && shown[at + 1] == '[') {
      const std::size_t end = shown.find_first_not_of("0123456789;", at + 2);
      if (end == std::string::npos) break;
      const int number = std::atoi(shown.c_str() + at + 2);
      if (shown[end] == 'K') lines[row].resize(std::min(lines[row].size(), column));
      if (shown[end] == 'J') {
        lines[row].resize(std::min(lines[row].size(), column));
        lines.resize(row + 1);
      }
      if (shown[end] == 'A') row -= std::min(row, static_cast<std::size_t>(number));
      at = end;
    } else {
      if (lines[row].size() <= column) lines[row].resize(column + 1, ' ');
      lines[row][column++] = letter;
    }
  }
  for (std::string& line : lines) line.resize(line.find_last_not_of(' ') + 1);
  while (!lines.empty() && lines.back().empty()) lines.pop_back();
  return lines;
}

}  // namespace qmx::test
