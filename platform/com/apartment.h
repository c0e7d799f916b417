// The single-threaded apartment in which the program's thread uses COM.
//
// Everything that holds a COM interface also holds the apartment, so the last interface is released before COM is left.
// The thread waits for busy servers (message_filter.h).
#pragma once

#include <objidl.h>

#include <memory>

#include "platform/com/com_ptr.h"

namespace qmx {

class ComApartment {
 public:
  // Returns the thread's apartment, and enters it if nothing holds it. Raises 429 if the thread is already in an
  // apartment of another kind, or if COM does not start.
  static std::shared_ptr<ComApartment> Enter();

  ~ComApartment();
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;

 private:
  ComApartment() = default;

  ComPtr<IMessageFilter> formerFilter_;  // of a library that entered the apartment before; usually null
};

}  // namespace qmx
