// Sequential text files, opened by number.
//
// Paths are texts with "\"; the adapter maps them to the machine's. A number that is already open is error 55, one that
// is not is 52; a missing file opened for input is 53, a missing folder 76, a refused one 70 or 75, a full disk 61 (at
// Print, Write or Close at the latest), any other device failure 57. Every description names the file by its native
// path. Lines end in CR LF.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace qmx {

class TextFiles {
 public:
  virtual ~TextFiles() = default;

  virtual void OpenForAppend(const std::string& path, int number) = 0;  // created when missing
  virtual void OpenForInput(const std::string& path, int number) = 0;

  // Writes one line, unchanged.
  virtual void Print(int number, std::string_view line) = 0;

  // Writes one record: each item in double quotes, commas between, quotes inside an item unchanged.
  virtual void Write(int number, std::initializer_list<std::string_view> items) = 0;

  // Reads one field: up to the first comma or line end outside double quotes, without leading blanks and surrounding
  // quotes. Raises 62 at the end of the file.
  virtual std::string InputField(int number) = 0;

  virtual void Close(int number) = 0;

  // The process's current directory, as a path text with "\".
  virtual std::string CurrentDirectory() = 0;
};

}  // namespace qmx
