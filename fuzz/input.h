// The bytes of one input, read from the beginning as numbers, choices and texts. At its end every number is 0 and every
// text is empty, so each input means something.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace qmx::fuzz {

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

  bool IsAtEnd() const { return rest_.empty(); }

  template <typename Number>
  Number Next() {
    Number number{};
    const std::size_t size = std::min(sizeof number, rest_.size());
    std::memcpy(&number, rest_.data(), size);
    rest_.remove_prefix(size);
    return number;
  }

  std::size_t Below(std::size_t limit) { return Next<std::uint8_t>() % limit; }
  bool Chance(unsigned percent) { return Below(100) < percent; }

  // Up to so many bytes. A byte before the text says how many.
  std::string Text(std::size_t most) {
    const std::size_t size = std::min(Below(most + 1), rest_.size());
    const std::string text(rest_.substr(0, size));
    rest_.remove_prefix(size);
    return text;
  }

  // The bytes up to a line end, which is passed.
  std::string Line() {
    const std::size_t end = std::min(rest_.find('\n'), rest_.size());
    const std::string line(rest_.substr(0, end));
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    return line;
  }

  std::string Rest() {
    const std::string text(rest_);
    rest_ = {};
    return text;
  }

 private:
  std::string_view rest_;
};

}  // namespace qmx::fuzz
