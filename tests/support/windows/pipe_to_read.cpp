#include "tests/support/pipe_to_read.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>
#include <winternl.h>

#include <stdexcept>

namespace qmx::test {
namespace {

HANDLE Reader(std::intptr_t reader) { return reinterpret_cast<HANDLE>(reader); }

HANDLE HandleOf(int descriptor) { return reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)); }

// FILE_PIPE_LOCAL_INFORMATION, which the headers for programs do not have.
struct PipeState {
  ULONG type, configuration, most, instances, inQuota, readable, outQuota, writable, state, end;
};
constexpr int kPipeInformation = 24;

ULONG Room(HANDLE pipe) {
  IO_STATUS_BLOCK status{};
  PipeState state{};
  NtQueryInformationFile(pipe, &status, &state, sizeof state, static_cast<FILE_INFORMATION_CLASS>(kPipeInformation));
  return state.writable;
}

}  // namespace

PipeToRead::PipeToRead() {
  SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE reader = nullptr, writer = nullptr;
  if (!CreatePipe(&reader, &writer, &inheritable, 4096)) throw std::runtime_error("no pipe can be created");
  SetHandleInformation(reader, HANDLE_FLAG_INHERIT, 0);
  reader_ = reinterpret_cast<std::intptr_t>(reader);
  writer_ = _open_osfhandle(reinterpret_cast<std::intptr_t>(writer), _O_BINARY);
}

PipeToRead::~PipeToRead() {
  CloseHandle(Reader(reader_));
  _close(writer_);
}

std::string PipeToRead::NumberForPrograms() const { return std::to_string(_get_osfhandle(writer_)); }

bool PipeToRead::IsInherited() const {
  DWORD flags = 0;
  return GetHandleInformation(HandleOf(writer_), &flags) && (flags & HANDLE_FLAG_INHERIT) != 0;
}

bool PipeToRead::Fill() {
  const HANDLE writer = HandleOf(writer_);
  const std::string block(Room(writer), 'x');
  DWORD written = 0;
  return !block.empty() && WriteFile(writer, block.data(), static_cast<DWORD>(block.size()), &written, nullptr);
}

std::string PipeToRead::ReadAll() {
  std::string text;
  DWORD size = 0;
  while (PeekNamedPipe(Reader(reader_), nullptr, 0, nullptr, &size, nullptr) && size > 0) {
    std::string part(size, '\0');
    ReadFile(Reader(reader_), part.data(), size, &size, nullptr);
    text += part.substr(0, size);
  }
  return text;
}

}  // namespace qmx::test
