// What a target requires of the product. A requirement that does not hold prints what was seen and ends the process, so
// that libFuzzer keeps the input.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace qmx::fuzz {

[[noreturn]] inline void Fail(const std::string& what) {
  std::fprintf(stderr, "The product is wrong: %s\n", what.c_str());
  std::abort();
}

inline void Require(bool holds, const std::string& what) {
  if (!holds) Fail(what);
}

// A text with its unprintable bytes as \x1F.
inline std::string Shown(std::string_view text) {
  std::string shown = "\"";
  for (const char c : text) {
    char escaped[8] = {c, '\0'};
    if (c < ' ' || c > '~' || c == '\\') {
      std::snprintf(escaped, sizeof escaped, "\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
    }
    shown += escaped;
  }
  return shown + '"';
}

inline void RequireSame(std::string_view actual, std::string_view expected, const std::string& what) {
  if (actual != expected) Fail(what + ": " + Shown(actual) + ", but must be " + Shown(expected));
}

}  // namespace qmx::fuzz
