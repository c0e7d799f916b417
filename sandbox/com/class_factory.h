// Creates the objects of one class for COM.
#pragma once

#include <objbase.h>

#include <atomic>

#include "com/com_classes.h"

namespace orvan {

class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(const ComClass& served) : served_(served) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override;
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() noexcept override;
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) noexcept override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }

 private:
  virtual ~ClassFactory() = default;

  std::atomic<ULONG> references_ = 1;
  const ComClass& served_;
};

}  // namespace orvan
