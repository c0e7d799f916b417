#include "platform/system/descriptors.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>
#include <winternl.h>

#include <atomic>
#include <thread>

namespace qmx {
namespace {

constexpr int kStandardDescriptors = 3;
constexpr ULONG kLine = 64;  // bytes
constexpr std::chrono::milliseconds kBetweenLooks{10};

// Of FILE_PIPE_LOCAL_INFORMATION, which the headers for programs do not have.
struct PipeState {
  ULONG type, configuration, most, instances, inQuota, readable, outQuota, writable, state, end;
};
constexpr int kPipeInformation = 24;

// Wine always says that a pipe has no room. A pipe that has some when it is taken over is believed later.
std::atomic<bool> tellsItsRoom = false;

bool SaysItHasRoom(HANDLE pipe) noexcept {
  IO_STATUS_BLOCK status{};
  PipeState state{};
  const NTSTATUS answer = NtQueryInformationFile(pipe, &status, &state, sizeof state,
                                                 static_cast<FILE_INFORMATION_CLASS>(kPipeInformation));
  return answer >= 0 && state.writable >= kLine;
}

bool HasRoom(HANDLE pipe) noexcept { return !tellsItsRoom || SaysItHasRoom(pipe); }

// A write to a full pipe then writes nothing, instead of waiting for its reader.
void NeverWait(HANDLE pipe) noexcept {
  DWORD mode = PIPE_READMODE_BYTE | PIPE_NOWAIT;
  SetNamedPipeHandleState(pipe, &mode, nullptr, nullptr);
}

}  // namespace

// Windows hands handles on, so the number is a handle's, or that of a standard stream.
int InheritedDescriptor(int number) noexcept {
  const auto handle = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(
      number < kStandardDescriptors ? _get_osfhandle(number) : static_cast<std::intptr_t>(number)));
  DWORD flags = 0;
  if (!GetHandleInformation(handle, &flags)) return -1;
  SetHandleInformation(handle, HANDLE_FLAG_INHERIT, 0);
  if (GetFileType(handle) == FILE_TYPE_PIPE) {
    tellsItsRoom = SaysItHasRoom(handle);
    NeverWait(handle);
  }
  return number < kStandardDescriptors ? number : _open_osfhandle(reinterpret_cast<std::intptr_t>(handle), _O_BINARY);
}

int Duplicated(int descriptor) noexcept {
  HANDLE second = nullptr;
  if (!DuplicateHandle(GetCurrentProcess(), reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)), GetCurrentProcess(),
                       &second, 0, FALSE, DUPLICATE_SAME_ACCESS))
    return -1;
  return _open_osfhandle(reinterpret_cast<std::intptr_t>(second), _O_BINARY | _O_NOINHERIT);
}

bool TakesALine(int descriptor, std::chrono::milliseconds within) noexcept {
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
  if (handle == INVALID_HANDLE_VALUE) return false;
  if (GetFileType(handle) != FILE_TYPE_PIPE) return true;
  const auto end = std::chrono::steady_clock::now() + within;
  while (!HasRoom(handle)) {
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(kBetweenLooks);
  }
  return true;
}

}  // namespace qmx
