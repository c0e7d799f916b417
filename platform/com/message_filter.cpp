#include "platform/com/message_filter.h"

namespace qmx {
namespace {

constexpr DWORD kLongestMilliseconds = 30000;
constexpr DWORD kWaitMilliseconds = 100;  // COM takes less for "at once"
constexpr auto kGiveUp = static_cast<DWORD>(-1);

}  // namespace

HRESULT MessageFilter::QueryInterface(REFIID id, void** object) noexcept {
  if (!object) return E_POINTER;
  const bool isKnown = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IMessageFilter);
  *object = isKnown ? this : nullptr;
  if (!isKnown) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG MessageFilter::Release() noexcept {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

DWORD MessageFilter::HandleInComingCall(DWORD, HTASK, DWORD, LPINTERFACEINFO) noexcept { return SERVERCALL_ISHANDLED; }

DWORD MessageFilter::RetryRejectedCall(HTASK, DWORD elapsed, DWORD) noexcept {
  return elapsed < kLongestMilliseconds ? kWaitMilliseconds : kGiveUp;
}

DWORD MessageFilter::MessagePending(HTASK, DWORD, DWORD) noexcept { return PENDINGMSG_WAITDEFPROCESS; }

}  // namespace qmx
