// An object of a COM component, one of whose calls fails in a way that only COM has. Its results that are objects fail
// in the same way.
#pragma once

#include <oaidl.h>

#include <functional>
#include <set>
#include <string>

#include "platform/com/com_ptr.h"
#include "tests/component_faults/planned_calls.h"

namespace qmx::test {

struct ComFailure {
  std::string name;  // "is disconnected"
  std::function<HRESULT(DISPPARAMS& parameters, VARIANT& result, EXCEPINFO& exception, UINT& wrongArgument)> invoke;
  bool isForGood = false;  // every call of the ERP after it fails, too
};

struct FailingCalls {
  PlannedCalls calls;
  const ComFailure* failure = nullptr;
  std::set<IUnknown*> living;  // all objects
  bool haveOwnIds = false;     // each object has other ids of its members, and no type information
  bool haveTypes = false;      // by-reference parameters have types, so that references to a VARIANT are refused

  void DisconnectAll() const;  // as if their process had ended
};

class FailingDispatch final : public IDispatch {
 public:
  // `calls` is borrowed. Null for null.
  static ComPtr<IDispatch> Around(ComPtr<IDispatch> inner, FailingCalls& calls);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return inner_->GetTypeInfoCount(count); }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** information) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID interfaceId, LCID locale, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) override;

 private:
  FailingDispatch(ComPtr<IDispatch> inner, FailingCalls& calls);
  virtual ~FailingDispatch() { calls_.living.erase(this); }

  ULONG references_ = 1;
  ComPtr<IDispatch> inner_;
  FailingCalls& calls_;
  std::string kind_;
  DISPID firstId_ = 0;
};

}  // namespace qmx::test
