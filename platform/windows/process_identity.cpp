#include "platform/system/process_identity.h"

#include <windows.h>
//
#include <psapi.h>
#include <winternl.h>

#include <algorithm>
#include <vector>

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

// From the list of all processes, which needs no right to the process.
std::optional<std::int64_t> StartInTheList(std::int64_t process) {
  constexpr std::size_t kRoomForMore = 4096;
  std::vector<std::uint64_t> memory(kRoomForMore);
  ULONG size = 0;
  NTSTATUS answer = 0;
  while ((answer = NtQuerySystemInformation(SystemProcessInformation, memory.data(),
                                            static_cast<ULONG>(memory.size() * sizeof(std::uint64_t)), &size)) ==
         static_cast<NTSTATUS>(0xC0000004)) {  // STATUS_INFO_LENGTH_MISMATCH
    memory.resize(std::max<std::size_t>(memory.size(), size / sizeof(std::uint64_t)) + kRoomForMore);
  }
  if (answer < 0) return std::nullopt;
  const char* place = reinterpret_cast<const char*>(memory.data());
  for (;;) {
    const auto& entry = *reinterpret_cast<const SYSTEM_PROCESS_INFORMATION*>(place);
    if (reinterpret_cast<std::intptr_t>(entry.UniqueProcessId) == process && entry.NumberOfThreads > 0)
      return entry.CreateTime.QuadPart;
    if (entry.NextEntryOffset == 0) return std::nullopt;
    place += entry.NextEntryOffset;
  }
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
  if (!opened && GetLastError() == ERROR_ACCESS_DENIED) return StartInTheList(process);
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
