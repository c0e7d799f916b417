#include "platform/system/system_log.h"

#include <windows.h>

#include <memory>

#include "platform/event_log.h"
#include "platform/windows/event_entry.h"
#include "platform/windows/wide_text.h"

namespace qmx {
namespace {

constexpr DWORD kAnyText = 1;  // the message in the program's resources that is the entry's text

struct CloseLog {
  void operator()(void* log) const { DeregisterEventSource(log); }
};

// Without the registration the viewer has no text for an entry, so such an entry belongs into the file.
bool IsRegistered(const std::wstring& source) {
  const std::wstring key = L"SYSTEM\\CurrentControlSet\\Services\\EventLog\\Application\\" + source;
  HKEY opened = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) return false;
  RegCloseKey(opened);
  return true;
}

}  // namespace

std::string UsualSystemLog() { return kSystemLogTag; }

std::string SystemLogSender() {
  return std::string(kSystemLogTag) + "[" + std::to_string(GetCurrentProcessId()) + "]: ";
}

// Windows adds the time.
bool SendToSystemLog(const std::string& systemLog, DateTime, std::string_view text, int type) {
  const std::wstring source = WideText(systemLog);
  if (!IsRegistered(source)) return false;
  const std::unique_ptr<void, CloseLog> log(RegisterEventSourceW(nullptr, source.c_str()));
  if (!log) return false;
  const std::wstring entry = EventEntry(text);
  const wchar_t* texts[] = {entry.c_str()};
  const WORD kind = type == EventLog::kTypeError ? EVENTLOG_ERROR_TYPE : EVENTLOG_INFORMATION_TYPE;
  return ReportEventW(log.get(), kind, 0, kAnyText, nullptr, 1, 0, texts, nullptr);
}

}  // namespace qmx
