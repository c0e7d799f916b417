// Writes one line on standard error about an unexpected end of the program: what ended it, during which call to a
// component, and the state of the table.
//
// Allocates no memory, so signal handlers and exit handlers may use it on any thread.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace qmx {

class EndLine {
 public:
  // Sets the table that this process copies. Without a table the line mentions none.
  static void SetTable(std::string_view tableCode) noexcept;

  // `reason` begins the line: "SIGSEGV ended the run".
  explicit EndLine(const char* reason) noexcept;

  // Status is the process's exit status, or 128 plus the number of the signal that ends it.
  void Write(int status) const noexcept;

  // Called with every line that is written, without its line end. It may be called in a signal handler.
  using Listener = void (*)(std::string_view line, int status) noexcept;
  static void SetListener(Listener listener) noexcept;

 private:
  void Add(const char* text) noexcept;
  void AddCall() noexcept;
  void AddTable() noexcept;

  std::array<char, 1023> text_;
  std::size_t length_ = 0;
};

}  // namespace qmx
