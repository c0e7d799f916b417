// The lines of a text file that people write: UTF-8, with or without a byte order mark, and with the line ends of any
// system. Blanks around a line are not part of it.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace qmx {

class TextLines {
 public:
  static constexpr std::string_view kBlanks = " \t\r";
  static constexpr const char* kIsUtf16 = "the text is UTF-16. Save it as UTF-8";

  explicit TextLines(const std::filesystem::path& file) : file_(file) {}

  bool IsOpen() const { return file_.is_open(); }  // if not, errno says why

  // Reads the next line. False at the end, and if the file cannot be read.
  bool Next();

  std::string_view Line() const { return line_; }  // valid until Next
  int Number() const { return number_; }           // 1 for the first line

  // Whether the file begins as one in UTF-16 does, whose lines mean nothing. After the first Next.
  bool IsUtf16() const { return isUtf16_; }

  // Whether Next has come to the end of the file.
  bool IsAtEnd() const { return file_.eof(); }

 private:
  std::ifstream file_;
  std::string text_;
  std::string_view line_;
  int number_ = 0;
  bool isUtf16_ = false;
};

}  // namespace qmx
