// Keeps exceptions from crossing to the host: each becomes the host's error.
#pragma once

#include "binding/failure.h"

namespace orvan {

// Fills the host's error from the exception in flight. The texts stay valid until the next failure in this library.
qmx_status Report(qmx_error* error) noexcept;

template <class Body>
qmx_status Guarded(qmx_error* error, Body body) noexcept {
  try {
    body();
    return QMX_OK;
  } catch (...) {
    return Report(error);
  }
}

}  // namespace orvan
