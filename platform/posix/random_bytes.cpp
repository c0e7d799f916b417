#include "platform/system/random_bytes.h"

#include <sys/random.h>

namespace qmx {

bool FillWithRandomBytes(std::span<unsigned char> bytes) noexcept {
  return getrandom(bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size());
}

}  // namespace qmx
