#include "platform/com/class_registration.h"

#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "platform/com/bstr.h"

namespace qmx {
namespace {

constexpr const wchar_t* kUsers = L"Software\\Classes\\";  // of the user and of the machine

// A text of a key of the classes, with its environment variables expanded; without a name the unnamed one.
std::optional<std::wstring> ValueOf(const std::wstring& key, const wchar_t* name = nullptr, DWORD view = 0,
                                    HKEY root = HKEY_CLASSES_ROOT) {
  const auto read = [&](wchar_t* text, DWORD& size) {
    return RegGetValueW(root, key.c_str(), name, RRF_RT_REG_SZ | view, nullptr, text, &size) == ERROR_SUCCESS;
  };
  DWORD size = 0;
  if (!read(nullptr, size)) return {};
  std::wstring text(size / sizeof(wchar_t) + 1, L'\0');
  size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  if (!read(text.data(), size)) return {};
  text.resize(text.find(L'\0'));
  return text;
}

bool Exists(const std::wstring& key, REGSAM view = 0, HKEY root = HKEY_CLASSES_ROOT) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ | view, &opened) != ERROR_SUCCESS) return false;
  RegCloseKey(opened);
  return true;
}

bool IsUsersOnly(const std::wstring& key) {
  const std::wstring path = kUsers + key;
  return Exists(path, 0, HKEY_CURRENT_USER) && !Exists(path, 0, HKEY_LOCAL_MACHINE);
}

// Whether a class of 32-bit programs has a process as its server, or gets one. It serves all programs.
bool HasProcess(const std::wstring& key) {
  if (Exists(key + L"\\LocalServer32", KEY_WOW64_32KEY)) return true;
  const std::optional<std::wstring> application = ValueOf(key, L"AppID", RRF_SUBKEY_WOW6432KEY);
  return application && ValueOf(L"AppID\\" + *application, L"DllSurrogate").has_value();
}

// Where the system finds the library; empty if it does not.
std::wstring FoundLibrary(const std::wstring& library) {
  std::wstring path(MAX_PATH, L'\0');
  DWORD length = SearchPathW(nullptr, library.c_str(), L".dll", static_cast<DWORD>(path.size()), path.data(), nullptr);
  if (length > path.size()) {
    path.resize(length);
    length = SearchPathW(nullptr, library.c_str(), L".dll", static_cast<DWORD>(path.size()), path.data(), nullptr);
  }
  path.resize(length);
  return path;
}

// Whether the headers of an executable file are those of 32-bit x86.
bool Is32Bit(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  IMAGE_DOS_HEADER start{};
  in.read(reinterpret_cast<char*>(&start), sizeof start);
  DWORD signature = 0;
  WORD machine = 0;
  in.seekg(start.e_lfanew);
  in.read(reinterpret_cast<char*>(&signature), sizeof signature);
  in.read(reinterpret_cast<char*>(&machine), sizeof machine);
  return in && signature == IMAGE_NT_SIGNATURE && machine == IMAGE_FILE_MACHINE_I386;
}

// Whether the registry can have a key of that name.
bool CanBeRegistered(std::string_view progId) { return !progId.empty() && progId.find('\0') == std::string_view::npos; }

}  // namespace

HRESULT FindClass(std::string_view progId, CLSID& id) {
  return CanBeRegistered(progId) ? CLSIDFromProgID(Wide(progId).c_str(), &id) : CO_E_CLASSSTRING;
}

std::optional<NameRegistration> RegistrationOf(std::string_view progId) {
  if (!CanBeRegistered(progId)) return {};
  const std::wstring key = Wide(progId) + L"\\CLSID";
  std::optional<std::wstring> text = ValueOf(key);
  if (!text) text = ValueOf(kUsers + key, nullptr, 0, HKEY_CURRENT_USER);
  if (!text) return {};
  CLSID id;
  return NameRegistration{Utf8WithReplacements(*text), SUCCEEDED(CLSIDFromString(text->c_str(), &id)),
                          IsUsersOnly(key)};
}

ClassRegistration RegistrationOf(const CLSID& id) {
  std::array<wchar_t, 64> text{};
  StringFromGUID2(id, text.data(), static_cast<int>(text.size()));
  const std::wstring key = std::wstring(L"CLSID\\") + text.data();
  ClassRegistration found;
  found.id = Utf8WithReplacements(text.data());
  found.isRegistered = Exists(key);
  found.isUsersOnly = IsUsersOnly(key);
  if (!found.isRegistered && Exists(key, KEY_WOW64_32KEY)) {
    found.isRegistered = true;
    found.isFor32BitProgramsOnly = !HasProcess(key);
  }
  const std::optional<std::wstring> library = ValueOf(key + L"\\InprocServer32");
  if (!library || library->empty()) return found;
  found.library = Utf8WithReplacements(*library);
  const std::wstring file = FoundLibrary(*library);
  found.isLibraryMissing = file.empty();
  found.isLibrary32Bit = !file.empty() && Is32Bit(file);
  return found;
}

}  // namespace qmx
