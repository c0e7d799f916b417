#include "tests/support/process.h"

#include <windows.h>

#include <filesystem>
#include <stdexcept>

namespace qmx::test {
namespace {

std::wstring Wide(const std::string& text) { return std::filesystem::path(text).wstring(); }

// As CommandLineToArgvW takes it apart: backslashes count only before a quote.
std::wstring Quoted(const std::string& argument) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t c : Wide(argument)) {
    if (c == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  return quoted.append(backslashes, L'\\') + L'"';
}

// The test's own, with these instead.
std::wstring EnvironmentWith(const std::map<std::string, std::string>& own) {
  std::wstring block;
  wchar_t* const all = GetEnvironmentStringsW();
  for (const wchar_t* entry = all; *entry; entry += wcslen(entry) + 1) {
    const std::wstring text = entry;
    const std::string name = std::filesystem::path(text.substr(0, text.find(L'=', 1))).string();
    if (!own.contains(name)) block += text + L'\0';
  }
  FreeEnvironmentStringsW(all);
  for (const auto& [name, value] : own) block += Wide(name + "=" + value) + L'\0';
  return block + L'\0';
}

HANDLE Inherited(const std::string& path, DWORD access, DWORD creation) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  return CreateFileW(Wide(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, creation, 0, nullptr);
}

}  // namespace

struct RunningProcess::State {
  HANDLE process = nullptr;
  DWORD number = 0;
};

RunningProcess::RunningProcess(const std::string& program, const std::vector<std::string>& arguments,
                               const std::map<std::string, std::string>& environment, const std::string& folder)
    : program_(program), state_(std::make_unique<State>()) {
  std::wstring line = Quoted(program);
  for (const std::string& argument : arguments) line += L' ' + Quoted(argument);
  std::wstring variables = EnvironmentWith(environment);
  STARTUPINFOW how{};
  how.cb = sizeof how;
  how.dwFlags = STARTF_USESTDHANDLES;
  how.hStdInput = Inherited("NUL", GENERIC_READ, OPEN_EXISTING);
  how.hStdOutput = Inherited(output_ / "out", GENERIC_WRITE, CREATE_ALWAYS);
  how.hStdError = Inherited(output_ / "err", GENERIC_WRITE, CREATE_ALWAYS);
  PROCESS_INFORMATION started{};
  const BOOL runs = CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE,
                                   CREATE_UNICODE_ENVIRONMENT | CREATE_NEW_PROCESS_GROUP, variables.data(),
                                   Wide(folder).c_str(), &how, &started);
  for (const HANDLE handle : {how.hStdInput, how.hStdOutput, how.hStdError}) CloseHandle(handle);
  if (!runs) throw std::runtime_error("cannot run " + program + ": " + std::to_string(GetLastError()));
  CloseHandle(started.hThread);
  *state_ = {started.hProcess, started.dwProcessId};
}

RunningProcess::~RunningProcess() {
  if (!HasEnded()) {
    TerminateProcess(state_->process, 1);
    WaitForSingleObject(state_->process, INFINITE);
  }
  CloseHandle(state_->process);
}

pid_t RunningProcess::Number() const { return static_cast<pid_t>(state_->number); }

bool RunningProcess::HasEnded() { return WaitForSingleObject(state_->process, 0) == WAIT_OBJECT_0; }

void RunningProcess::Kill() {
  if (!TerminateProcess(state_->process, 1)) throw std::runtime_error(program_ + " runs no more");
}

Process RunningProcess::Wait() {
  WaitForSingleObject(state_->process, INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(state_->process, &status);
  return {static_cast<int>(status), ReadFile(output_ / "out"), ReadFile(output_ / "err")};
}

Process Run(const std::string& program, const std::vector<std::string>& arguments,
            const std::map<std::string, std::string>& environment, const std::string& folder) {
  return RunningProcess(program, arguments, environment, folder).Wait();
}

}  // namespace qmx::test
