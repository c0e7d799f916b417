// The wall between C++ and the host: whatever is thrown inside becomes the host's error, and nothing gets past it.
#pragma once

#include <new>

#include "binding/failure.h"

namespace orvan {

// Fills the host's error. The texts stay valid until the next failure in this library.
qmx_status Report(qmx_error* error, Failure failure) noexcept;

template <class Body>
qmx_status Guarded(qmx_error* error, Body body) noexcept {
  try {
    body();
    return QMX_OK;
  } catch (const Failure& failure) {
    return Report(error, failure);
  } catch (const std::bad_alloc&) {
    return Report(error, Failure(kOutOfMemory, "Sandbox", "There is not enough memory."));
  } catch (const std::exception& other) {
    return Report(error, Failure(QMX_E_INTERNAL, "Sandbox", other.what()));
  } catch (...) {
    return Report(error, Failure(QMX_E_INTERNAL, "Sandbox", "Something unknown was thrown."));
  }
}

}  // namespace orvan
