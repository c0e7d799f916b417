#include "tools/qmxadmin/system/processes.h"

#include <windows.h>
//
#include <shellapi.h>
#include <tlhelp32.h>
#include <winternl.h>

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/windows/handle.h"
#include "platform/windows/wide_text.h"

namespace qmx {
namespace {

constexpr auto kCommandLine = static_cast<PROCESSINFOCLASS>(60);  // not in mingw's headers

template <typename Value>
bool Read(HANDLE process, const void* place, Value& value) {
  SIZE_T read = 0;
  return ReadProcessMemory(process, place, &value, sizeof value, &read) && read == sizeof value;
}

// From where the process itself has it.
std::optional<std::wstring> CommandLineInMemory(DWORD number) {
  const Handle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, number));
  PROCESS_BASIC_INFORMATION places{};
  PEB environment{};
  RTL_USER_PROCESS_PARAMETERS parameters{};
  if (!process ||
      NtQueryInformationProcess(process.Get(), ProcessBasicInformation, &places, sizeof places, nullptr) < 0 ||
      !Read(process.Get(), places.PebBaseAddress, environment) ||
      !Read(process.Get(), environment.ProcessParameters, parameters)) {
    return std::nullopt;
  }
  std::wstring text(parameters.CommandLine.Length / sizeof(wchar_t), L'\0');
  SIZE_T read = 0;
  if (!ReadProcessMemory(process.Get(), parameters.CommandLine.Buffer, text.data(), parameters.CommandLine.Length,
                         &read) ||
      read != parameters.CommandLine.Length) {
    return std::nullopt;
  }
  return text;
}

// Returns the command line of a process, which this user may read, or nothing. Wine 8.0 does not answer the question.
std::optional<std::wstring> CommandLineOf(HANDLE process, DWORD number) {
  ULONG size = 0;
  NtQueryInformationProcess(process, kCommandLine, nullptr, 0, &size);
  if (size == 0) return CommandLineInMemory(number);
  std::vector<std::uint64_t> memory(size / sizeof(std::uint64_t) + 1);
  if (NtQueryInformationProcess(process, kCommandLine, memory.data(), size, &size) < 0) return std::nullopt;
  const auto* const text = reinterpret_cast<const UNICODE_STRING*>(memory.data());
  return std::wstring(text->Buffer, text->Length / sizeof(wchar_t));
}

// The words of a command line, without the program's name, joined by blanks.
std::string ArgumentsOf(const std::wstring& commandLine) {
  struct Free {
    void operator()(wchar_t** words) const { LocalFree(words); }
  };
  int count = 0;
  const std::unique_ptr<wchar_t*, Free> words(CommandLineToArgvW(commandLine.c_str(), &count));
  std::string arguments;
  for (int i = 1; words && i < count; ++i) arguments += (i > 1 ? " " : "") + NarrowText(words.get()[i]);
  return arguments;
}

std::time_t StartOf(HANDLE process) {
  constexpr std::int64_t kTicks = 10'000'000;      // a second
  constexpr std::int64_t kEpoch = 11'644'473'600;  // seconds from 1601 to 1970
  FILETIME started{}, ended{}, kernel{}, user{};
  if (!GetProcessTimes(process, &started, &ended, &kernel, &user)) return 0;
  const std::uint64_t ticks = (std::uint64_t{started.dwHighDateTime} << 32) | started.dwLowDateTime;
  return static_cast<std::int64_t>(ticks) / kTicks - kEpoch;
}

}  // namespace

std::vector<RunningProgram> RunningPrograms(const std::string& name) {
  std::vector<RunningProgram> running;
  const std::wstring file = WideText(name + ".exe");
  const Handle all(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof entry;
  for (BOOL any = all && Process32FirstW(all.Get(), &entry); any; any = Process32NextW(all.Get(), &entry)) {
    if (CompareStringOrdinal(entry.szExeFile, -1, file.c_str(), -1, TRUE) != CSTR_EQUAL) continue;
    const Handle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, entry.th32ProcessID));
    const std::optional<std::wstring> commandLine =
        process ? CommandLineOf(process.Get(), entry.th32ProcessID) : std::nullopt;
    if (commandLine) running.push_back({entry.th32ProcessID, ArgumentsOf(*commandLine), StartOf(process.Get())});
  }
  return running;
}

}  // namespace qmx
