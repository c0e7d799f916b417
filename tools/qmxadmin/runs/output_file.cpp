#include "tools/qmxadmin/runs/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>

#include "platform/error.h"

namespace qmx {

void WriteOutputFile(const std::string& path, const std::string& text) {
  if (path == "-") {
    std::cout << text;
    return;
  }
  std::string name = path + ".XXXXXX";
  const int descriptor = mkostemp(name.data(), O_CLOEXEC);
  const auto fail = [&](int code) {
    if (descriptor >= 0) unlink(name.c_str());
    throw Error(errors::kPathFileAccess, "qmxadmin",
                "The file \"" + path + "\" cannot be written: " + std::strerror(code) + ".");
  };
  if (descriptor < 0) fail(errno);
  std::FILE* const file = fdopen(descriptor, "w");
  const bool isWritten = std::fwrite(text.data(), 1, text.size(), file) == text.size() && std::fflush(file) == 0 &&
                         fchmod(descriptor, 0644) == 0;
  const int code = errno;
  const bool isClosed = std::fclose(file) == 0;
  if (!isWritten) fail(code);
  if (!isClosed || std::rename(name.c_str(), path.c_str()) != 0) fail(errno);
}

}  // namespace qmx
