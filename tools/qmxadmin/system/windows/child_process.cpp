#include "tools/qmxadmin/system/child_process.h"

#include <fmt/format.h>

#include "platform/error.h"
#include "platform/windows/system_codes.h"
#include "platform/windows/wide_text.h"
#include "tools/qmxadmin/system/windows/child_state.h"
#include "tools/qmxadmin/system/windows/start_process.h"

namespace qmx {
namespace {

constexpr DWORD kFirstException = 0xC0000000;
constexpr DWORD kInterrupted = 0xC000013A;  // STATUS_CONTROL_C_EXIT

// Returns what can be read without waiting.
std::string ReadAll(HANDLE pipe) {
  std::string text;
  while (const DWORD size = Readable(pipe)) {
    const std::size_t before = text.size();
    text.resize(before + size);
    DWORD read = 0;
    ReadFile(pipe, text.data() + before, size, &read, nullptr);
    text.resize(before + read);
  }
  return text;
}

}  // namespace

DWORD Readable(HANDLE pipe) {
  DWORD size = 0;
  return PeekNamedPipe(pipe, nullptr, 0, nullptr, &size, nullptr) ? size : 0;
}

ChildProcess::ChildProcess(const std::string& program, const std::string& argument, std::vector<Variable> variables)
    : state_(std::make_unique<State>()) {
  InheritablePipe progress;
  InheritablePipe output;
  state_->progress = progress.reader;
  state_->output = output.reader;
  variables.push_back({"QMX_PROGRESS_FD", std::to_string(reinterpret_cast<std::intptr_t>(progress.writer))});
  const std::wstring wide = WideText(program);
  const PROCESS_INFORMATION started =
      StartProcess({wide, Quoted(wide) + L" " + Quoted(WideText(argument)), std::move(variables), output.writer,
                    progress.writer, CREATE_NEW_PROCESS_GROUP});
  const DWORD code = GetLastError();
  progress.CloseWriter();
  output.CloseWriter();
  state_->process = started.hProcess;
  state_->number = started.dwProcessId;
  if (started.hProcess) return;
  throw Error(errors::kFileNotFound, "qmxadmin copy",
              fmt::format("{} cannot be started: {}.", program, SystemMessage(code)));
}

ChildProcess::~ChildProcess() {
  for (const HANDLE handle : {state_->progress, state_->output, state_->process}) CloseHandle(handle);
}

std::string ChildProcess::ReadProgress() { return ReadAll(state_->progress); }

std::string ChildProcess::ReadOutput() { return ReadAll(state_->output); }

bool ChildProcess::HasEnded() {
  if (!state_->end && WaitForSingleObject(state_->process, 0) == WAIT_OBJECT_0) {
    DWORD code = 0;
    GetExitCodeProcess(state_->process, &code);
    state_->end = code;
  }
  return state_->end.has_value();
}

// A process group of its own does not get Ctrl-C, but it gets Ctrl-Break. The other events come from Windows itself.
// Where the event cannot be made (Wine), the second request ends the process.
void ChildProcess::PassOn(const EndRequest& request) const {
  const bool isKey = request.number == CTRL_C_EVENT || request.number == CTRL_BREAK_EVENT;
  if (!isKey || state_->end) return;
  const bool isPassedOn = GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, state_->number);
  if (!isPassedOn && state_->wasAsked) TerminateProcess(state_->process, kInterrupted);
  state_->wasAsked = true;
}

std::optional<int> ChildProcess::ExitStatus() const {
  return state_->end && *state_->end < kFirstException ? std::optional(static_cast<int>(*state_->end)) : std::nullopt;
}

std::string ChildProcess::Killer() const {
  if (!state_->end || *state_->end < kFirstException) return {};
  return *state_->end == kInterrupted ? "an interruption" : fmt::format("exception 0x{:08X}", *state_->end);
}

}  // namespace qmx
