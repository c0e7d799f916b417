// The calls of plain_file.cpp that tests replace.
#pragma once

#include <windows.h>

#include "platform/windows/file_form.h"

namespace qmx {

struct PlainFileCalls {
  FileForm (*formOf)(HANDLE file);
  void(WINAPI* pause)(DWORD milliseconds);  // between two attempts to open a file that another program holds
};
extern PlainFileCalls plainFileCalls;

}  // namespace qmx
