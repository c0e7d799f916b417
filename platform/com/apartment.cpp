#include "platform/com/apartment.h"

#include <objbase.h>

#include "platform/com/hresult.h"
#include "platform/error.h"

namespace qmx {

std::shared_ptr<ComApartment> ComApartment::Enter() {
  thread_local std::weak_ptr<ComApartment> entered;
  if (std::shared_ptr<ComApartment> known = entered.lock()) return known;

  const HRESULT result = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
  if (FAILED(result)) {
    throw Error(errors::kCannotCreateObject, "COM", "COM does not start: " + DescribeHresult(result));
  }
  std::shared_ptr<ComApartment> apartment;
  try {
    apartment.reset(new ComApartment);
  } catch (...) {
    CoUninitialize();
    throw;
  }
  entered = apartment;
  return apartment;
}

ComApartment::~ComApartment() { CoUninitialize(); }

}  // namespace qmx
