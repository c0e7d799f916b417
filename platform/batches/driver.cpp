#include "platform/batches/driver.h"

#include <utility>

#include "platform/batches/session.h"

namespace qmx {

std::unique_ptr<DriverSession> BatchingDriver::Open(const ConnectionText& text) {
  auto inner = qmx::Retries(clock_, &retries_).Run([&] { return inner_.Open(text); });
  return std::make_unique<BatchingDriverSession>(std::move(inner), clock_, &retries_);
}

}  // namespace qmx
