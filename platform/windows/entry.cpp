#include "platform/system/entry.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "platform/system/early_memory.h"
#include "platform/windows/wide_text.h"

namespace {

// Output has the bytes that it has on other systems, and a console shows them as UTF-8 until the program ends.
class Utf8Output {
 public:
  Utf8Output() noexcept : before_(GetConsoleOutputCP()) {
    for (std::FILE* stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
    if (before_ != 0) SetConsoleOutputCP(CP_UTF8);
  }
  ~Utf8Output() {
    if (before_ != 0) SetConsoleOutputCP(before_);
  }
  Utf8Output(const Utf8Output&) = delete;
  Utf8Output& operator=(const Utf8Output&) = delete;

 private:
  UINT before_;  // 0 without a console
};

}  // namespace

int wmain(int argc, wchar_t** argv) {
  qmx::MainHasBegun();
  // A missing library or an empty drive is a failure of the call, and a crash ends the process at once. Nobody sees a
  // window of a scheduled task, and child processes inherit this.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX | SEM_NOGPFAULTERRORBOX);
  const Utf8Output output;
  static std::vector<std::string> words;
  static std::vector<const char*> pointers;
  for (int i = 0; i < argc; ++i) words.push_back(qmx::NarrowText(argv[i]));
  for (const std::string& word : words) pointers.push_back(word.c_str());
  return qmx::ProgramMain(pointers);
}
