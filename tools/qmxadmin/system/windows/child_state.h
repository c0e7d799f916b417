// What a child process is on Windows.
#pragma once

#include <windows.h>

#include "platform/windows/handle.h"
#include "tools/qmxadmin/system/child_process.h"

namespace qmx {

struct ChildProcess::State {
  State() = default;
  ~State() {
    for (const HANDLE handle : {progress, output, process, endEvent}) {
      if (handle) CloseHandle(handle);
    }
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  HANDLE progress = nullptr;  // ends of pipes, to read from
  HANDLE output = nullptr;
  HANDLE process = nullptr;
  HANDLE endEvent = nullptr;  // asks it to end
  DWORD number = 0;
  std::optional<DWORD> end;  // its exit code
  bool wasAsked = false;     // to end
};

// How many bytes can be read without waiting.
DWORD Readable(HANDLE pipe);

}  // namespace qmx
