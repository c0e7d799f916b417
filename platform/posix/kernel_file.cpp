#include "platform/posix/kernel_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>

namespace qmx {

std::string ReadKernelFile(const std::string& path) {
  std::string text;
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return text;
  std::array<char, 4096> buffer{};
  for (ssize_t length = 0; (length = read(descriptor, buffer.data(), buffer.size())) > 0;)
    text.append(buffer.data(), static_cast<std::size_t>(length));
  close(descriptor);
  return text;
}

}  // namespace qmx
