#include "platform/system/process_identity.h"

#include <windows.h>
//
#include <psapi.h>

#include "platform/windows/handle.h"
#include "platform/windows/user.h"
#include "platform/windows/wide_text.h"

namespace qmx {
namespace {

std::string UserName(std::int64_t number) {
  wchar_t name[257];
  DWORD size = std::size(name);
  return GetUserNameW(name, &size) && size > 1 ? NarrowText({name, size - 1}) : std::to_string(number);
}

}  // namespace

std::string HostName() {
  wchar_t name[256];
  DWORD size = std::size(name);
  return GetComputerNameExW(ComputerNameDnsHostname, name, &size) ? NarrowText({name, size}) : "";
}

// Nothing in Windows changes with each boot and only then. The start of a process is a date here, and needs no boot.
std::string BootNumber() { return {}; }

// In units of 100 ns since 1601, UTC.
std::optional<std::int64_t> StartTicksOf(std::int64_t process) {
  const Handle opened(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, static_cast<DWORD>(process)));
  FILETIME started{}, ended{}, kernel{}, user{};
  if (!opened || WaitForSingleObject(opened.Get(), 0) != WAIT_TIMEOUT ||
      !GetProcessTimes(opened.Get(), &started, &ended, &kernel, &user)) {
    return std::nullopt;
  }
  return static_cast<std::int64_t>((std::uint64_t{started.dwHighDateTime} << 32) | started.dwLowDateTime);
}

ProcessIdentity ThisProcess() {
  const std::int64_t process = GetCurrentProcessId();
  const std::int64_t user = UserSid().Number();
  return {HostName(), process, StartTicksOf(process), BootNumber(), UserName(user), user};
}

std::optional<std::int64_t> PeakMemoryKib() {
  PROCESS_MEMORY_COUNTERS counters{};
  if (!GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters)) return std::nullopt;
  return static_cast<std::int64_t>(counters.PeakWorkingSetSize / 1024);
}

}  // namespace qmx
