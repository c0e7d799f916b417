#include "tools/qmxadmin/runs/output_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "platform/error.h"
#include "tools/qmxadmin/system/new_files.h"
#include "tools/qmxadmin/system/rename_over.h"

namespace qmx {
namespace {

[[noreturn]] void Fail(const std::string& path, const std::string& reason) {
  throw Error(errors::kPathFileAccess, "qmxadmin", "The file \"" + path + "\" cannot be written: " + reason + ".");
}

}  // namespace

void WriteOutputFile(const std::string& path, const std::string& text) {
  if (path == "-") {
    std::cout << text;
    return;
  }
  std::string name = path + ".XXXXXX";
  std::FILE* const file = CreateNewFile(name);
  if (!file) Fail(path, std::strerror(errno));
  const bool isWritten =
      std::fwrite(text.data(), 1, text.size(), file) == text.size() && std::fflush(file) == 0 && LetEverybodyRead(file);
  int code = isWritten ? 0 : errno;
  if (std::fclose(file) != 0 && code == 0) code = errno;
  const std::string problem = code == 0 ? RenameOver(name, path) : std::strerror(code);
  if (problem.empty()) return;
  std::error_code ignored;
  std::filesystem::remove(name, ignored);
  Fail(path, problem);
}

}  // namespace qmx
