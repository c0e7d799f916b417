// What a child process is on Windows.
#pragma once

#include <windows.h>

#include "platform/windows/handle.h"
#include "tools/qmxadmin/system/child_process.h"

namespace qmx {

struct ChildProcess::State {
  HANDLE progress = nullptr;  // ends of pipes, to read from
  HANDLE output = nullptr;
  HANDLE process = nullptr;
  DWORD number = 0;
  std::optional<DWORD> end;  // its exit code
  bool wasAsked = false;     // to end
};

// How many bytes can be read without waiting.
DWORD Readable(HANDLE pipe);

}  // namespace qmx
