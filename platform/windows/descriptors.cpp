#include "platform/system/descriptors.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include "platform/system/write_all.h"
#include "platform/windows/line_pipe.h"

namespace qmx {
namespace {

constexpr int kStandardDescriptors = 3;

LinePipe listener;  // there is one at most

// A write to a full pipe then writes what has room, or nothing, instead of waiting for the reader.
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
  if (GetFileType(handle) == FILE_TYPE_PIPE) NeverWait(handle);
  return number < kStandardDescriptors ? number : _open_osfhandle(reinterpret_cast<std::intptr_t>(handle), _O_BINARY);
}

int Duplicated(int descriptor) noexcept {
  HANDLE second = nullptr;
  if (!DuplicateHandle(GetCurrentProcess(), reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)), GetCurrentProcess(),
                       &second, 0, FALSE, DUPLICATE_SAME_ACCESS))
    return -1;
  return _open_osfhandle(reinterpret_cast<std::intptr_t>(second), _O_BINARY | _O_NOINHERIT);
}

bool WriteLine(int descriptor, std::string_view line, std::chrono::milliseconds within) noexcept {
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
  if (handle == INVALID_HANDLE_VALUE) return false;
  if (GetFileType(handle) == FILE_TYPE_PIPE) return listener.Write(handle, line, within);
  WriteAll(descriptor, line);
  return true;
}

}  // namespace qmx
