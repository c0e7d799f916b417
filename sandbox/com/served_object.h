// An object of a server as a COM client calls it.
#pragma once

#include <oaidl.h>

#include <atomic>

#include "qmx/component_server.h"

namespace orvan {

class ServedObject final : public IDispatch {
 public:
  // Returns the object's interface with a reference for the caller, and takes over that to the object. An object has
  // one interface as long as a client holds it.
  static IDispatch* For(qmx_object* object);

  // Returns the object behind an interface of this library, borrowed; null for another object.
  static qmx_object* Behind(IDispatch& client);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override;
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() noexcept override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** information) noexcept override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO* exception, UINT* wrongArgument) noexcept override;

 private:
  explicit ServedObject(qmx_object* object);
  virtual ~ServedObject();

  std::atomic<ULONG> references_ = 1;
  qmx_object* object_;
};

}  // namespace orvan
