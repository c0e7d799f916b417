// The sandbox's component servers as an in-process COM server: what COM calls in the library.
#include "com/class_factory.h"
#include "com/registration.h"

STDAPI DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
  *object = nullptr;
  try {
    for (const orvan::ComClass& served : orvan::ComClasses()) {
      if (!IsEqualGUID(served.id, classId)) continue;
      auto* const factory = new orvan::ClassFactory(served);
      const HRESULT result = factory->QueryInterface(id, object);
      factory->Release();
      return result;
    }
    return CLASS_E_CLASSNOTAVAILABLE;
  } catch (...) {
    return E_FAIL;
  }
}

// Never, because the servers stay loaded.
STDAPI DllCanUnloadNow() { return S_FALSE; }

STDAPI DllRegisterServer() { return orvan::RegisterClasses(); }
STDAPI DllUnregisterServer() { return orvan::UnregisterClasses(); }
