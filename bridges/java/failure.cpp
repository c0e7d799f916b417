#include "failure.h"

#include <exception>
#include <new>

namespace java_bridge {
namespace {

Failure Current() {
  try {
    throw;
  } catch (const Failure& failure) {
    return failure;
  } catch (const std::bad_alloc&) {
    return {kOutOfMemory, {}, {}};
  } catch (const std::exception& other) {
    return {kInternal, other.what(), {}};
  }
}

}  // namespace

qmx_status FailWithCurrent(qmx_error* error) noexcept {
  static auto& last = *new Failure{};  // never destroyed: calls may fail while the process ends
  error->source = "Java";
  error->source_length = 4;
  try {
    last = Current();
    error->number = last.number;
    error->description = last.description.data();
    error->description_length = last.description.size();
    if (QMX_HAS(error, details_length)) {
      error->details = last.details.data();
      error->details_length = last.details.size();
    }
  } catch (...) {
    error->number = kOutOfMemory;  // the texts stay empty
  }
  return QMX_FAILED;
}

}  // namespace java_bridge
