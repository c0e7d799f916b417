#include "com/sha1.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace orvan::test {
namespace {

std::string Digest(const std::string& bytes) {
  std::string text;
  for (const std::uint8_t byte : Sha1(bytes)) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", byte);
    text += digits;
  }
  return text;
}

TEST(Sha1, GivesTheStandardsDigests) {
  EXPECT_EQ(Digest(""), "da39a3ee5e6b4b0d3255bfef95601890afd80709");
  EXPECT_EQ(Digest("abc"), "a9993e364706816aba3e25717850c26c9cd0d89d");
  EXPECT_EQ(Digest("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
            "84983e441c3bd26ebaae4aa1f95129e5e54670f1");
  EXPECT_EQ(Digest(std::string(1000000, 'a')), "34aa973cd4c4daa4f61eeb2bdbad27316534016f");
}

}  // namespace
}  // namespace orvan::test
