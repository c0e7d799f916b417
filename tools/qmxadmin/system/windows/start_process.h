// Starts a process that inherits exactly the handles that it is given.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tools/qmxadmin/system/child_process.h"

namespace qmx {

struct Start {
  std::wstring program;
  std::wstring commandLine;                       // with the program's name
  std::vector<ChildProcess::Variable> variables;  // in place of this process's own
  HANDLE output = nullptr;                        // standard output and standard error; null for those of this process
  HANDLE inherited = nullptr;                     // one more handle
  DWORD flags = 0;
};

// The handles must allow inheritance. Returns the process, without its thread; null handles if GetLastError says why
// not.
PROCESS_INFORMATION StartProcess(const Start& start);

struct InheritablePipe {
  InheritablePipe();  // raises 57
  void CloseWriter();

  HANDLE reader = nullptr;
  HANDLE writer = nullptr;  // can be inherited
};

// The word as one argument of a command line.
std::wstring Quoted(std::wstring_view word);

}  // namespace qmx
