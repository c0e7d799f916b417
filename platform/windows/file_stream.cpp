#include "platform/windows/file_stream.h"

#include <fcntl.h>
#include <io.h>

#include <cerrno>
#include <cstdint>

namespace qmx {

std::FILE* StreamOver(Handle& file, const char* mode) {
  const int descriptor = _open_osfhandle(reinterpret_cast<std::intptr_t>(file.Get()), _O_BINARY | _O_NOINHERIT);
  if (descriptor < 0) return nullptr;
  file.Release();
  std::FILE* const stream = _fdopen(descriptor, mode);
  if (stream) return stream;
  const int code = errno;
  _close(descriptor);
  errno = code;
  return nullptr;
}

}  // namespace qmx
