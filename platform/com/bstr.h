// Texts of COM, which are UTF-16, and of the program, which are UTF-8.
#pragma once

#include <oaidl.h>
#include <oleauto.h>

#include <string>
#include <string_view>
#include <utility>

namespace qmx {

// Invalid UTF-8 becomes U+FFFD.
std::wstring Wide(std::string_view text);

// Raises 13 for a text that is no valid UTF-16 or holds a NUL. The error names the character, counted from 1.
std::string Utf8(std::wstring_view text);

// Invalid UTF-16 and NUL become U+FFFD.
std::string Utf8WithReplacements(std::wstring_view text);

inline std::wstring_view View(BSTR text) {
  return text ? std::wstring_view(text, SysStringLen(text)) : std::wstring_view();
}

// Returns a new BSTR, which the caller owns. Raises 7 without memory.
BSTR NewBstr(std::string_view text);

// Frees a BSTR that a component has given, or that nobody has taken over yet.
class OwnedBstr {
 public:
  OwnedBstr() = default;
  explicit OwnedBstr(BSTR text) : text_(text) {}
  ~OwnedBstr() { SysFreeString(text_); }
  OwnedBstr(const OwnedBstr&) = delete;
  OwnedBstr& operator=(const OwnedBstr&) = delete;

  BSTR* Receiver() { return &text_; }
  BSTR Release() { return std::exchange(text_, nullptr); }
  std::wstring_view View() const { return qmx::View(text_); }

 private:
  BSTR text_ = nullptr;
};

}  // namespace qmx
