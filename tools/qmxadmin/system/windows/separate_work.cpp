#include "tools/qmxadmin/system/separate_work.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <io.h>

#include <array>

#include "platform/error.h"
#include "platform/system/end_at_once.h"
#include "platform/system/environment.h"
#include "platform/windows/own_path.h"
#include "platform/windows/system_codes.h"
#include "platform/windows/wide_text.h"
#include "tools/qmxadmin/system/windows/start_process.h"

namespace qmx {
namespace {

// Set for the process that does the work: the handle of its pipe, and the number of its first step.
constexpr const char* kPipe = "QMXADMIN_SEPARATE_PIPE";
constexpr const char* kFirst = "QMXADMIN_SEPARATE_FIRST";

// Does the steps as the process that was started for them.
[[noreturn]] void DoSteps(const SeparateWork::Steps& steps) {
  const std::intptr_t pipe = std::stoll(EnvironmentVariable(kPipe).value_or("0"));
  SetHandleInformation(reinterpret_cast<HANDLE>(pipe), HANDLE_FLAG_INHERIT, 0);
  steps(std::stoul(EnvironmentVariable(kFirst).value_or("0")), _open_osfhandle(pipe, _O_BINARY));
  EndAtOnce(0);
}

}  // namespace

struct SeparateWork::State {
  HANDLE pipe = nullptr;
  HANDLE process = nullptr;
};

SeparateWork::SeparateWork(const Steps& steps, std::size_t first) : state_(std::make_unique<State>()) {
  if (IsThisProcess()) DoSteps(steps);
  InheritablePipe pipe;
  state_->pipe = pipe.reader;
  const PROCESS_INFORMATION started = StartProcess(
      {OwnPath().wstring(),
       GetCommandLineW(),
       {{kPipe, std::to_string(reinterpret_cast<std::intptr_t>(pipe.writer))}, {kFirst, std::to_string(first)}},
       nullptr,
       pipe.writer,
       0});
  const DWORD code = GetLastError();
  pipe.CloseWriter();
  state_->process = started.hProcess;
  if (started.hProcess) return;
  throw Error(errors::kOutOfMemory, "qmxadmin check",
              fmt::format("No process can be created: {}.", SystemMessage(code)));
}

SeparateWork::~SeparateWork() {
  CloseHandle(state_->pipe);
  CloseHandle(state_->process);
}

bool SeparateWork::IsThisProcess() { return EnvironmentVariable(kPipe).has_value(); }

std::string SeparateWork::Read() {
  std::array<char, 4096> buffer{};
  DWORD count = 0;
  ReadFile(state_->pipe, buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr);
  return {buffer.data(), count};
}

std::string SeparateWork::WaitForEnd() {
  constexpr DWORD kFirstException = 0xC0000000;
  WaitForSingleObject(state_->process, INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(state_->process, &code);
  return code < kFirstException ? fmt::format("something called exit with status {}", code)
                                : fmt::format("exception 0x{:08X} ended the process", code);
}

}  // namespace qmx
