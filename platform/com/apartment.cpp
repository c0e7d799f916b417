#include "platform/com/apartment.h"

#include <objbase.h>

#include "platform/com/hresult.h"
#include "platform/com/message_filter.h"
#include "platform/error.h"

namespace qmx {
namespace {

std::string WhyItDoesNotStart(HRESULT result) {
  const std::string why = "it does not start: " + DescribeHresult(result);
  if (result != RPC_E_CHANGED_MODE) return why + "; free memory, or restart Windows";
  return why +
         "; a component server has put the program's thread into a multithreaded apartment: let it use a thread of its "
         "own";
}

}  // namespace

std::shared_ptr<ComApartment> ComApartment::Enter() {
  thread_local std::weak_ptr<ComApartment> entered;
  if (std::shared_ptr<ComApartment> known = entered.lock()) return known;

  const HRESULT result = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
  if (FAILED(result)) throw Error(errors::kCannotCreateObject, "COM", WhyItDoesNotStart(result));
  std::shared_ptr<ComApartment> apartment;
  try {
    apartment.reset(new ComApartment);
  } catch (...) {
    CoUninitialize();
    throw;
  }
  const auto filter = ComPtr<IMessageFilter>::Owning(new MessageFilter);
  const HRESULT registered = CoRegisterMessageFilter(filter.Get(), apartment->formerFilter_.Receiver());
  if (FAILED(registered)) throw Error(errors::kCannotCreateObject, "COM", WhyItDoesNotStart(registered));
  entered = apartment;
  return apartment;
}

ComApartment::~ComApartment() {
  CoRegisterMessageFilter(formerFilter_.Get(), nullptr);
  formerFilter_ = {};
  CoUninitialize();
}

}  // namespace qmx
