// Opens a file for a log, a trace or a setting, in a folder that others may write to.
//
// Opens regular files only, and never waits for another program to read or write: a named pipe in the place of a log is
// refused and does not hang the program. On Windows it waits up to a second for a file that another program does not
// share. If the name is a symbolic link, it is followed only if the link belongs to root or to the program's user, so
// that no other user chooses which file the program writes. Links in place of a folder are followed.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace qmx {

enum class FileUse { Append, Input };  // Append creates a file that is missing

struct PlainFile {
  struct CloseStream {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
  };
  std::unique_ptr<std::FILE, CloseStream> stream;  // null if the file was refused
  int descriptor = -1;                             // the stream's, for a record in one write

  // Why it was refused.
  int code = 0;        // an errno value
  std::string reason;  // continues a sentence that begins with the file's name; empty if the code says it all
};

// The path is in the system's own form.
PlainFile OpenPlainFile(const std::string& path, FileUse use);

}  // namespace qmx
