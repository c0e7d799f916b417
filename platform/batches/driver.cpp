#include "platform/batches/driver.h"

#include "platform/batches/session.h"

namespace qmx {

std::unique_ptr<DriverSession> BatchingDriver::Open(const ConnectionText& text) {
  return std::make_unique<BatchingDriverSession>(inner_.Open(text), clock_);
}

}  // namespace qmx
