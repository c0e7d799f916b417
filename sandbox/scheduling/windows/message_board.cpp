#include "scheduling/message_board.h"

#include <windows.h>

#include <string>

namespace orvan {

// The narrow environment has only the letters of the process's code page.
std::filesystem::path MessageBoard() {
  std::wstring board(32768, L'\0');  // the longest value
  board.resize(GetEnvironmentVariableW(L"QMX_MESSAGE_BOARD", board.data(), static_cast<DWORD>(board.size())));
  return board;
}

}  // namespace orvan
