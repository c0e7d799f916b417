#include "tools/qmxadmin/system/child_process.h"

#include <fmt/format.h>

#include <array>

#include "platform/error.h"
#include "platform/system/random_bytes.h"
#include "platform/windows/end_event_name.h"
#include "platform/windows/end_events.h"
#include "platform/windows/system_codes.h"
#include "platform/windows/wide_text.h"
#include "tools/qmxadmin/system/windows/child_state.h"
#include "tools/qmxadmin/system/windows/start_process.h"

namespace qmx {
namespace {

constexpr DWORD kFirstException = 0xC0000000;
constexpr DWORD kInterrupted = 0xC000013A;  // STATUS_CONTROL_C_EXIT

// Ends that no handler of the process hears of. The first is that of every abort of newer C libraries, too.
constexpr DWORD kStackBufferOverrun = 0xC0000409;
constexpr DWORD kHeapCorruption = 0xC0000374;

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

// An event with a name that no other process has.
struct NamedEvent {
  NamedEvent() {
    std::array<unsigned char, 16> number{};
    FillWithRandomBytes(number);
    name = fmt::format("Local\\qmxadmin-{}-{:02x}", GetCurrentProcessId(), fmt::join(number, ""));
    handle = CreateEventW(nullptr, TRUE, FALSE, WideText(name).c_str());
    if (!handle)
      throw Error(errors::kDeviceIo, "qmxadmin copy",
                  fmt::format("No event can be created: {}.", SystemMessage(GetLastError())));
  }

  std::string name;
  HANDLE handle = nullptr;
};

}  // namespace

DWORD Readable(HANDLE pipe) {
  DWORD size = 0;
  return PeekNamedPipe(pipe, nullptr, 0, nullptr, &size, nullptr) ? size : 0;
}

ChildProcess::ChildProcess(const std::string& program, const std::string& argument, std::vector<Variable> variables)
    : state_(std::make_unique<State>()) {
  const NamedEvent endEvent;
  state_->endEvent = endEvent.handle;
  variables.push_back({NarrowText(kEndEventVariable), endEvent.name});
  InheritablePipe progress;
  state_->progress = progress.reader;
  InheritablePipe output;
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

ChildProcess::~ChildProcess() = default;

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

// A console event would need a console that both have. A second key ends the process at once; the other events come
// once.
void ChildProcess::PassOn(const EndRequest& request) const {
  if (state_->end) return;
  if (!state_->wasAsked) {
    SetEvent(state_->endEvent);
  } else if (EndEvents::IsKey(static_cast<DWORD>(request.number))) {
    TerminateProcess(state_->process, kInterrupted);
  }
  state_->wasAsked = true;
}

std::optional<int> ChildProcess::ExitStatus() const {
  return state_->end && *state_->end < kFirstException ? std::optional(static_cast<int>(*state_->end)) : std::nullopt;
}

std::string ChildProcess::Killer() const {
  if (!state_->end || *state_->end < kFirstException) return {};
  if (*state_->end == kInterrupted) return "an interruption";
  const bool isFastFail = *state_->end == kStackBufferOverrun || *state_->end == kHeapCorruption;
  return fmt::format("exception 0x{:08X}{}", *state_->end,
                     isFastFail ? " (a component ended the process at once)" : "");
}

}  // namespace qmx
