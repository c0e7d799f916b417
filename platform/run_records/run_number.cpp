#include "platform/run_records/run_number.h"

#include <array>
#include <string_view>

#include "platform/error.h"
#include "platform/system/random_bytes.h"

namespace qmx {

std::string NewRunNumber() {
  std::array<unsigned char, 16> bytes{};
  if (!FillWithRandomBytes(bytes))
    throw Error(errors::kInternal, "Run record", "The kernel gave no random bytes for the run's number.");
  bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0f) | 0x40);
  bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3f) | 0x80);
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 0x0f];
  }
  return text;
}

}  // namespace qmx
