#include "platform/system/random_bytes.h"

#include <windows.h>
//
#include <bcrypt.h>

namespace qmx {

bool FillWithRandomBytes(std::span<unsigned char> bytes) noexcept {
  return BCryptGenRandom(nullptr, bytes.data(), static_cast<ULONG>(bytes.size()), BCRYPT_USE_SYSTEM_PREFERRED_RNG) >= 0;
}

}  // namespace qmx
