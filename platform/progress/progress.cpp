#include "platform/progress/progress.h"

#include <charconv>
#include <string_view>

#include "platform/progress/progress_text.h"
#include "platform/system/descriptors.h"
#include "platform/system/environment.h"
#include "platform/system/terminal.h"
#include "platform/system/write_all.h"

namespace qmx {
namespace {

constexpr std::chrono::milliseconds kBetweenLooks{125};
constexpr int kLooksBetweenLines = 2;
constexpr std::chrono::seconds kForTheEnd{5};
constexpr std::int64_t kDeleting = -2;  // in place of a number of rows

}  // namespace

std::unique_ptr<Progress> Progress::FromEnvironment(const std::string& table) {
  const int terminal = IsLiveTerminal(kStandardError) ? kStandardError : kNobody;
  const int listener = ListenerFromEnvironment();
  if (terminal == kNobody && listener == kNobody) return nullptr;
  return std::make_unique<Progress>(table, terminal, listener);
}

int Progress::ListenerFromEnvironment() {
  const std::string text = EnvironmentVariable("QMX_PROGRESS_FD").value_or("");
  int descriptor = kNobody;
  const auto parsed = std::from_chars(text.data(), text.data() + text.size(), descriptor);
  const bool isNumber = !text.empty() && parsed.ec == std::errc() && parsed.ptr == text.data() + text.size();
  return isNumber && descriptor >= 0 ? InheritedDescriptor(descriptor) : kNobody;
}

void Progress::TellEnd(int listener, int status) {
  if (listener != kNobody) WriteLine(listener, "end " + std::to_string(status) + "\n", kForTheEnd);
}

Progress::Progress(std::string table, int terminal, int listener, SteadyClock& clock)
    : table_(std::move(table)), terminal_(terminal), listener_(listener), clock_(clock), helper_([this] {
        ShowUntilTheEnd();
      }) {}

Progress::~Progress() { End(); }

void Progress::End() noexcept {
  if (!helper_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  ended_.notify_one();
  helper_.join();
}

void Progress::ShowUntilTheEnd() {
  std::unique_lock lock(mutex_);
  for (int look = 1; !EndsBefore(clock_.Now() + kBetweenLooks, lock); ++look) {
    if (terminal_ != kNobody) Draw();
    if (look % kLooksBetweenLines == 0) Tell();
  }
  Tell();
  if (!drawn_.empty()) WriteAll(terminal_, ClearText(TerminalWidth(terminal_)));
}

bool Progress::EndsBefore(SteadyClock::TimePoint due, SteadyClock::Lock& lock) {
  while (!ends_ && clock_.Now() < due) clock_.WaitUntil(due, ended_, lock);
  return ends_;
}

void Progress::Draw() {
  const auto now = clock_.Now();
  const std::int64_t rows = rows_.load(std::memory_order_relaxed);
  const auto elapsed = std::chrono::duration_cast<std::chrono::seconds>(now - start_);
  const std::int64_t rate = rate_.At(now, rows);
  std::string line = counter_.IsDeleting() ? DeletingText(table_, elapsed) : ProgressText(table_, rows, rate, elapsed);
  if (!IsInForeground(terminal_)) return;
  // A line as wide as the terminal would wrap.
  const int width = TerminalWidth(terminal_);
  line.resize(std::min(line.size(), static_cast<std::size_t>(width - 1)));
  if (line == drawn_ && width == drawnWidth_) return;
  WriteAll(terminal_, ClearText(width) + line);
  drawn_ = std::move(line);
  drawnWidth_ = width;
}

std::string Progress::ClearText(int terminalWidth) const {
  const int rows = RowsTaken(static_cast<int>(drawn_.size()), terminalWidth);
  if (rows == 1) return std::string(kClearLine);
  return "\x1b[" + std::to_string(rows - 1) + "A\r\x1b[J";
}

void Progress::Tell() {
  const std::int64_t rows = counter_.IsDeleting() ? kDeleting : rows_.load(std::memory_order_relaxed);
  if (listener_ == kNobody || rows == told_) return;
  const std::string line = rows == kDeleting ? "deleting\n" : "rows " + std::to_string(rows) + "\n";
  if (WriteLine(listener_, line)) told_ = rows;
}

}  // namespace qmx
