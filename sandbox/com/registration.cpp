#include "com/registration.h"

#include <string>

#include "com/com_classes.h"
#include "com/guid.h"
#include "com/values.h"

namespace orvan {
namespace {

struct Place {
  HKEY root;
  const wchar_t* path;  // of the classes, ends in a backslash unless empty
};
const Place kUser = {HKEY_CURRENT_USER, L"Software\\Classes\\"};
const Place kMachine = {HKEY_CLASSES_ROOT, L""};

LSTATUS Set(const Place& place, const std::wstring& key, const wchar_t* name, const std::wstring& value) {
  return RegSetKeyValueW(place.root, (place.path + key).c_str(), name, REG_SZ, value.c_str(),
                         static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

LSTATUS Enter(const Place& place, const ComClass& served) {
  const std::wstring progId = Wide(served.progId.data(), served.progId.size());
  const std::wstring id = TextOf(served.id);
  const std::wstring server = L"CLSID\\" + id + L"\\InprocServer32";
  LSTATUS status = Set(place, progId + L"\\CLSID", nullptr, id);
  if (status == ERROR_SUCCESS) status = Set(place, L"CLSID\\" + id + L"\\ProgID", nullptr, progId);
  if (status == ERROR_SUCCESS) status = Set(place, server, nullptr, ThisLibrary().wstring());
  if (status == ERROR_SUCCESS) status = Set(place, server, L"ThreadingModel", L"Apartment");
  return status;
}

LSTATUS EnterAll(const Place& place) {
  for (const ComClass& served : ComClasses()) {
    const LSTATUS status = Enter(place, served);
    if (status != ERROR_SUCCESS) return status;
  }
  return ERROR_SUCCESS;
}

void Remove(const Place& place, const ComClass& served) {
  RegDeleteTreeW(place.root, (place.path + Wide(served.progId.data(), served.progId.size())).c_str());
  RegDeleteTreeW(place.root, (place.path + (L"CLSID\\" + TextOf(served.id))).c_str());
}

bool AreFound() {
  for (const ComClass& served : ComClasses()) {
    CLSID id;
    if (FAILED(CLSIDFromProgID(Wide(served.progId.data(), served.progId.size()).c_str(), &id))) return false;
  }
  return true;
}

}  // namespace

HRESULT RegisterClasses() noexcept {
  try {
    LSTATUS status = EnterAll(kUser);
    if (status == ERROR_SUCCESS && !AreFound()) status = EnterAll(kMachine);
    return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
  } catch (...) {
    return E_FAIL;
  }
}

HRESULT UnregisterClasses() noexcept {
  try {
    for (const ComClass& served : ComClasses()) {
      Remove(kUser, served);
      CLSID id;
      const HRESULT found = CLSIDFromProgID(Wide(served.progId.data(), served.progId.size()).c_str(), &id);
      if (SUCCEEDED(found) && IsEqualGUID(id, served.id)) Remove(kMachine, served);
    }
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

}  // namespace orvan
