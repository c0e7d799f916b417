// What COM does while a server in another process or apartment is busy.
#pragma once

#include <objidl.h>

#include <atomic>

namespace qmx {

// Repeats a call that a server rejects, every tenth of a second for at most 30 seconds. Meanwhile calls to objects of
// the program are handled.
class MessageFilter final : public IMessageFilter {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override;
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() noexcept override;
  DWORD STDMETHODCALLTYPE HandleInComingCall(DWORD, HTASK, DWORD, LPINTERFACEINFO) noexcept override;
  DWORD STDMETHODCALLTYPE RetryRejectedCall(HTASK, DWORD elapsed, DWORD rejection) noexcept override;
  DWORD STDMETHODCALLTYPE MessagePending(HTASK, DWORD, DWORD) noexcept override;

 private:
  virtual ~MessageFilter() = default;

  std::atomic<ULONG> references_ = 1;
};

}  // namespace qmx
