#include "com/class_factory.h"

#include <new>

#include "com/objects.h"

namespace orvan {

HRESULT ClassFactory::QueryInterface(REFIID id, void** object) noexcept {
  const bool isKnown = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IClassFactory);
  *object = isKnown ? this : nullptr;
  if (!isKnown) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG ClassFactory::Release() noexcept {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID id, void** object) noexcept {
  *object = nullptr;
  if (outer) return CLASS_E_NOAGGREGATION;
  try {
    IDispatch* const created = FromServer(Create(served_));
    const HRESULT result = created->QueryInterface(id, object);
    created->Release();
    return result;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_FAIL;
  }
}

}  // namespace orvan
