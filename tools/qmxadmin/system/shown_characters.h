// How a terminal shows the characters of a UTF-8 text.
#pragma once

#include <cstddef>
#include <string_view>

namespace qmx {

// A byte that is not UTF-8 counts as one character, and so does a control character.
struct ShownCharacter {
  std::size_t bytes = 1;
  int width = 1;  // in columns
  bool printable = false;
};

class ShownCharacters {
 public:
  ShownCharacters();  // for this thread, until it is destroyed
  ~ShownCharacters();
  ShownCharacters(const ShownCharacters&) = delete;
  ShownCharacters& operator=(const ShownCharacters&) = delete;

  // The first character of a text that is not empty.
  ShownCharacter FirstOf(std::string_view text) const;

 private:
  void* before_ = nullptr;
};

}  // namespace qmx
