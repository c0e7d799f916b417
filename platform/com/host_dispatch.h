// An object of the program as a component sees it.
//
// A component can call any Dispatch. All these objects have one set of member ids, those of the names that components
// have looked up. Whether an object has the member shows at the call. Properties cannot be set, and arguments cannot be
// named.
#pragma once

#include <oaidl.h>

#include <atomic>
#include <memory>

#include "platform/com/com_ptr.h"
#include "platform/components.h"

namespace qmx {

class HostDispatch final : public IDispatch {
 public:
  // Returns the object's interface, the same one as long as a component holds it.
  static ComPtr<IDispatch> For(const std::shared_ptr<Dispatch>& target);

  // Returns the object behind an interface of For; null for an object of a component.
  static std::shared_ptr<Dispatch> TargetOf(const IUnknown* identity);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override;
  ULONG STDMETHODCALLTYPE AddRef() noexcept override;
  ULONG STDMETHODCALLTYPE Release() noexcept override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** information) noexcept override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO* exception, UINT* wrongArgument) noexcept override;

 private:
  explicit HostDispatch(std::shared_ptr<Dispatch> target);
  virtual ~HostDispatch();

  std::atomic<ULONG> references_ = 1;
  const std::shared_ptr<Dispatch> target_;
};

}  // namespace qmx
