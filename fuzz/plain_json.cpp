#include "fuzz/plain_json.h"

#include "fuzz/plain_utf8.h"

namespace qmx::fuzz {
namespace {

class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  bool IsAtEnd() const { return rest_.empty(); }

  bool Value() {
    Blanks();
    const bool isRight = Is("{") ? Members() : Is("[") ? Elements() : Is("\"") ? Text() : Word() || Number();
    Blanks();
    return isRight;
  }

 private:
  bool Is(std::string_view wanted) {
    if (!rest_.starts_with(wanted)) return false;
    rest_.remove_prefix(wanted.size());
    return true;
  }
  bool IsOneOf(std::string_view set) {
    if (rest_.empty() || set.find(rest_[0]) == std::string_view::npos) return false;
    rest_.remove_prefix(1);
    return true;
  }
  void Blanks() {
    while (IsOneOf(" \t\r\n")) continue;
  }
  bool Word() { return Is("true") || Is("false") || Is("null"); }

  bool Members() {
    Blanks();
    if (Is("}")) return true;
    do {
      Blanks();
      if (!Is("\"") || !Text()) return false;
      Blanks();
      if (!Is(":") || !Value()) return false;
    } while (Is(","));
    return Is("}");
  }

  bool Elements() {
    Blanks();
    if (Is("]")) return true;
    do {
      if (!Value()) return false;
    } while (Is(","));
    return Is("]");
  }

  bool Text() {
    while (!rest_.empty() && !Is("\"")) {
      if (static_cast<unsigned char>(rest_[0]) < 0x20) return false;
      if (Is("\\u")) {
        for (int i = 0; i < 4; ++i) {
          if (!IsOneOf("0123456789abcdefABCDEF")) return false;
        }
      } else if (Is("\\")) {
        if (!IsOneOf("\"\\/bfnrt")) return false;
      } else {
        rest_.remove_prefix(1);
      }
      if (rest_.empty()) return false;
    }
    return true;
  }

  bool Digits() {
    if (!IsOneOf("0123456789")) return false;
    while (IsOneOf("0123456789")) continue;
    return true;
  }

  bool Number() {
    Is("-");
    if (!Is("0") && !Digits()) return false;
    if (Is(".") && !Digits()) return false;
    if (!IsOneOf("eE")) return true;
    IsOneOf("+-");
    return Digits();
  }

  std::string_view rest_;
};

}  // namespace

bool IsJson(std::string_view text) {
  Reader reader(text);
  return IsUtf8(text) && reader.Value() && reader.IsAtEnd();
}

}  // namespace qmx::fuzz
