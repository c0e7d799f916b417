// Sequential text files in the machine's file system.
//
// Printed text is written when the file is closed, or earlier if there is much, so the lines of one opening stay
// together when several processes append to one file. A path that holds a NUL character is error 75.
// Files are opened as plain_file.h has it: regular files only, and no symbolic links of other users.
#pragma once

#include <map>

#include "platform/system/plain_file.h"
#include "platform/text_files.h"

namespace qmx {

class SystemTextFiles : public TextFiles {
 public:
  void OpenForAppend(const std::string& path, int number) override;
  void OpenForInput(const std::string& path, int number) override;
  void Print(int number, std::string_view line) override;
  void Write(int number, std::initializer_list<std::string_view> items) override;
  std::string InputField(int number) override;
  void Close(int number) override;
  std::string CurrentDirectory() override;

 private:
  struct OpenFile {
    std::string path;  // in its native form
    FileUse use;
    PlainFile file;
  };

  void Open(const std::string& path, int number, FileUse use);
  OpenFile& Find(int number, FileUse use);

  std::map<int, OpenFile> files_;
};

}  // namespace qmx
