#include "tools/qmxadmin/system/readers.h"

#include <io.h>
#include <windows.h>

namespace qmx {

// Writing nothing fails where the pipe's reader is gone.
bool NobodyReads(int descriptor) {
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
  if (GetFileType(handle) != FILE_TYPE_PIPE) return false;
  DWORD written = 0;
  if (WriteFile(handle, "", 0, &written, nullptr)) return false;
  const DWORD code = GetLastError();
  return code == ERROR_NO_DATA || code == ERROR_BROKEN_PIPE || code == ERROR_PIPE_NOT_CONNECTED;
}

}  // namespace qmx
