#include "tools/qmxadmin/system/readers.h"

#include <io.h>
#include <windows.h>

namespace qmx {

// Nothing can be asked about the other end of every pipe, so this writes a line end, which nobody sees.
bool NobodyReads(int descriptor) {
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
  if (GetFileType(handle) != FILE_TYPE_PIPE) return false;
  DWORD written = 0;
  if (WriteFile(handle, "\n", 1, &written, nullptr)) return false;
  const DWORD code = GetLastError();
  return code == ERROR_NO_DATA || code == ERROR_BROKEN_PIPE || code == ERROR_PIPE_NOT_CONNECTED;
}

}  // namespace qmx
