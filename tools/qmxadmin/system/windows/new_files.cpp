#include "tools/qmxadmin/system/new_files.h"

#include <windows.h>

#include <array>
#include <cerrno>
#include <string_view>

#include "platform/system/random_bytes.h"
#include "platform/windows/file_stream.h"
#include "platform/windows/system_codes.h"
#include "platform/windows/wide_text.h"

namespace qmx {
namespace {

constexpr int kMostAttempts = 100;
constexpr std::size_t kPlaces = 6;

// Replaces the last characters until the creation does not find a file of that name.
template <typename Create>
bool CreateAnyName(std::string& path, Create&& create) {
  constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz012345";
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    std::array<unsigned char, kPlaces> bytes{};
    FillWithRandomBytes(bytes);
    for (std::size_t i = 0; i < kPlaces; ++i) path[path.size() - kPlaces + i] = kLetters[bytes[i] % kLetters.size()];
    if (create(WideText(path))) return true;
    const DWORD code = GetLastError();
    errno = ErrnoOf(code);
    if (code != ERROR_FILE_EXISTS && code != ERROR_ALREADY_EXISTS) return false;
  }
  return false;
}

}  // namespace

std::FILE* CreateNewFile(std::string& path) {
  HANDLE created = INVALID_HANDLE_VALUE;
  const bool isCreated = CreateAnyName(path, [&](const std::wstring& name) {
    created = CreateFileW(name.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, CREATE_NEW,
                          FILE_ATTRIBUTE_NORMAL, nullptr);
    return created != INVALID_HANDLE_VALUE;
  });
  Handle file(created);
  return isCreated ? StreamOver(file, "wb") : nullptr;
}

// The folder's rights hold for its files.
bool LetEverybodyRead(std::FILE*) { return true; }

bool CreateNewFolder(std::string& path) {
  return CreateAnyName(path, [](const std::wstring& name) { return CreateDirectoryW(name.c_str(), nullptr) != FALSE; });
}

std::string TemporaryFiles() {
  std::wstring folder(MAX_PATH + 1, L'\0');
  folder.resize(GetTempPathW(static_cast<DWORD>(folder.size()), folder.data()));
  while (folder.ends_with(L'\\')) folder.pop_back();
  return NarrowText(folder);
}

}  // namespace qmx
