#include "com/sha1.h"

#include <bit>
#include <string>

namespace orvan {
namespace {

constexpr std::size_t kBlock = 64;

using State = std::array<std::uint32_t, 5>;

void Add(State& state, const unsigned char* block) {
  std::array<std::uint32_t, 80> words;
  for (std::size_t i = 0; i < 16; ++i) {
    words[i] = std::uint32_t{block[4 * i]} << 24 | std::uint32_t{block[4 * i + 1]} << 16 |
               std::uint32_t{block[4 * i + 2]} << 8 | std::uint32_t{block[4 * i + 3]};
  }
  for (std::size_t i = 16; i < words.size(); ++i) {
    words[i] = std::rotl(words[i - 3] ^ words[i - 8] ^ words[i - 14] ^ words[i - 16], 1);
  }
  auto [a, b, c, d, e] = state;
  for (std::size_t i = 0; i < words.size(); ++i) {
    std::uint32_t mixed = 0;
    if (i < 20) {
      mixed = ((b & c) | (~b & d)) + 0x5A827999;
    } else if (i < 40) {
      mixed = (b ^ c ^ d) + 0x6ED9EBA1;
    } else if (i < 60) {
      mixed = ((b & c) | (b & d) | (c & d)) + 0x8F1BBCDC;
    } else {
      mixed = (b ^ c ^ d) + 0xCA62C1D6;
    }
    const std::uint32_t next = std::rotl(a, 5) + mixed + e + words[i];
    e = d;
    d = c;
    c = std::rotl(b, 30);
    b = a;
    a = next;
  }
  state = {state[0] + a, state[1] + b, state[2] + c, state[3] + d, state[4] + e};
}

}  // namespace

std::array<std::uint8_t, 20> Sha1(std::string_view bytes) {
  std::string padded(bytes);
  padded += '\x80';
  while (padded.size() % kBlock != kBlock - 8) padded += '\0';
  const std::uint64_t bits = std::uint64_t{bytes.size()} * 8;
  for (int shift = 56; shift >= 0; shift -= 8) padded += static_cast<char>(bits >> shift & 0xFF);

  State state = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
  for (std::size_t at = 0; at < padded.size(); at += kBlock) {
    Add(state, reinterpret_cast<const unsigned char*>(padded.data()) + at);
  }
  std::array<std::uint8_t, 20> digest;
  for (std::size_t i = 0; i < digest.size(); ++i) {
    digest[i] = static_cast<std::uint8_t>(state[i / 4] >> (24 - 8 * (i % 4)));
  }
  return digest;
}

}  // namespace orvan
