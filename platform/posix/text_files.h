// Sequential text files on a POSIX file system.
//
// What is printed is handed to the system when the file is closed, or earlier where it is much: the lines that one
// opening adds stay together when several processes append to one file. A path that holds a NUL character is error 75.
#pragma once

#include <cstdio>
#include <map>
#include <memory>

#include "platform/text_files.h"

namespace qmx {

class PosixTextFiles : public TextFiles {
 public:
  void OpenForAppend(const std::string& path, int number) override;
  void OpenForInput(const std::string& path, int number) override;
  void Print(int number, std::string_view line) override;
  void Write(int number, std::initializer_list<std::string_view> items) override;
  std::string InputField(int number) override;
  void Close(int number) override;
  std::string CurrentDirectory() override;

 private:
  struct CloseStream {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
  };
  struct OpenFile {
    std::string path;  // as it was given
    bool forInput;
    std::unique_ptr<std::FILE, CloseStream> stream;
  };

  void Open(const std::string& path, int number, bool forInput);
  OpenFile& Find(int number, bool forInput);

  std::map<int, OpenFile> files_;
};

}  // namespace qmx
