#include "com/guid.h"

#include "com/sha1.h"

namespace orvan {
namespace {

// 1F0A7C5E-5B1D-4C1B-9B52-7C0E6D2F4A31, in network order.
constexpr char kNamespace[] = "\x1F\x0A\x7C\x5E\x5B\x1D\x4C\x1B\x9B\x52\x7C\x0E\x6D\x2F\x4A\x31";
constexpr std::size_t kSize = 16;

}  // namespace

GUID GuidOf(std::string_view name) {
  std::string bytes(kNamespace, kSize);
  for (const char letter : name) {
    bytes += letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  }
  std::array<std::uint8_t, 20> digest = Sha1(bytes);
  digest[6] = static_cast<std::uint8_t>((digest[6] & 0x0F) | 0x50);  // version 5
  digest[8] = static_cast<std::uint8_t>((digest[8] & 0x3F) | 0x80);
  GUID guid;
  guid.Data1 = std::uint32_t{digest[0]} << 24 | std::uint32_t{digest[1]} << 16 | std::uint32_t{digest[2]} << 8 |
               std::uint32_t{digest[3]};
  guid.Data2 = static_cast<unsigned short>(digest[4] << 8 | digest[5]);
  guid.Data3 = static_cast<unsigned short>(digest[6] << 8 | digest[7]);
  for (std::size_t i = 0; i < sizeof guid.Data4; ++i) guid.Data4[i] = digest[8 + i];
  return guid;
}

std::wstring TextOf(const GUID& guid) {
  wchar_t text[64];
  StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
  return text;
}

}  // namespace orvan
