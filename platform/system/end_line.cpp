#include "platform/system/end_line.h"

#include <algorithm>
#include <atomic>

#include "platform/running_call.h"
#include "platform/scheduling_server.h"
#include "platform/system/standard_error.h"

namespace qmx {
namespace {

std::array<char, 64> table{};
std::atomic<EndLine::Listener> currentListener = nullptr;

}  // namespace

void EndLine::SetTable(std::string_view tableCode) noexcept {
  table.fill('\0');
  std::copy_n(tableCode.begin(), std::min(tableCode.size(), table.size() - 1), table.begin());
}

EndLine::EndLine(const char* reason) noexcept {
  Add(reason);
  AddCall();
  AddTable();
}

void EndLine::Add(const char* text) noexcept {
  for (; *text && length_ < text_.size(); ++text) {
    const bool isControl = static_cast<unsigned char>(*text) < 0x20 || *text == 0x7f;
    text_[length_++] = isControl ? ' ' : *text;
  }
}

void EndLine::AddCall() noexcept {
  const char* const member = RunningCall::Member();
  if (!member) return Add(" outside of all component calls");
  const char* const progId = RunningCall::ProgId();
  Add(" during ");
  Add(member);
  Add(" of ");
  Add(progId ? progId : "an object without a ProgID");
}

// The ERP is called only while the table is marked as in progress. Other components are called before and after, too.
void EndLine::AddTable() noexcept {
  if (!table[0]) return;
  const bool isErps = RunningCall::Member() && !IsSchedulingServers(RunningCall::ProgId());
  Add(isErps ? ": the table stays in progress: qmxadmin release "
             : ": the table may stay in progress: qmxadmin status, qmxadmin release ");
  Add(table.data());
}

void EndLine::Write(int status) const noexcept {
  const std::string_view line(text_.data(), length_);
  WriteToStandardError({line, "\n"});
  if (const Listener listener = currentListener) listener(line, status);
}

void EndLine::SetListener(Listener listener) noexcept { currentListener = listener; }

}  // namespace qmx
