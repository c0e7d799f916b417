// The bridge's exception, and its way out through the C interface.
#pragma once

#include <qmx/component_server.h>

#include <cstdint>
#include <string>

namespace java_bridge {

inline constexpr std::int32_t kOverflow = QMX_E_OVERFLOW;
inline constexpr std::int32_t kOutOfMemory = 7;
inline constexpr std::int32_t kTypeMismatch = QMX_E_TYPE_MISMATCH;
inline constexpr std::int32_t kInternal = QMX_E_INTERNAL;
inline constexpr std::int32_t kOutOfStack = 28;
inline constexpr std::int32_t kJavaException = -2147467259;  // of any class but those above

struct Failure {
  std::int32_t number;
  std::string description;
  std::string details;
};

// Fills in `error` from the exception in flight. The texts stay valid until the next failure.
qmx_status FailWithCurrent(qmx_error* error) noexcept;

// Runs a call from the host. Its exception becomes *error.
template <typename Body>
qmx_status Guarded(qmx_error* error, Body&& body) noexcept {
  try {
    body();
    return QMX_OK;
  } catch (...) {
    return FailWithCurrent(error);
  }
}

}  // namespace java_bridge
