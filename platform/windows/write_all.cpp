#include "platform/system/write_all.h"

#include <io.h>
#include <windows.h>

#include <algorithm>
#include <cerrno>

#include "platform/windows/system_codes.h"

namespace qmx {
namespace {

constexpr std::size_t kPiece = 512;  // bytes of a text for a console

// The length of a piece that does not end within a character.
std::size_t PieceOf(std::string_view text) noexcept {
  if (text.size() <= kPiece) return text.size();
  std::size_t length = kPiece;
  while (length > kPiece - 4 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) --length;
  return length;
}

// A console takes UTF-16, whatever its code page, and may take a part of it.
void WriteToConsole(HANDLE console, std::string_view text) noexcept {
  wchar_t wide[kPiece];
  while (!text.empty()) {
    const std::size_t piece = PieceOf(text);
    const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(piece), wide, std::size(wide));
    for (int done = 0; done < length;) {
      DWORD written = 0;
      if (!WriteConsoleW(console, wide + done, static_cast<DWORD>(length - done), &written, nullptr) || written == 0)
        return;
      done += static_cast<int>(written);
    }
    text.remove_prefix(piece);
  }
}

HANDLE HandleOf(int descriptor) noexcept { return reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)); }

}  // namespace

void WriteAll(int descriptor, std::string_view text) noexcept {
  const HANDLE handle = HandleOf(descriptor);
  DWORD mode = 0;
  if (GetConsoleMode(handle, &mode)) {
    WriteToConsole(handle, text);
    return;
  }
  while (!text.empty()) {
    DWORD written = 0;
    const auto length = static_cast<DWORD>(std::min<std::size_t>(text.size(), 1 << 20));
    if (!WriteFile(handle, text.data(), length, &written, nullptr) || written == 0) return;
    text.remove_prefix(written);
  }
}

int WriteAtOnce(int descriptor, std::string_view text) noexcept {
  DWORD written = 0;
  if (!WriteFile(HandleOf(descriptor), text.data(), static_cast<DWORD>(text.size()), &written, nullptr))
    return LastErrno();
  return written == text.size() ? 0 : ENOSPC;
}

}  // namespace qmx
