#include "platform/system/plain_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <filesystem>

namespace qmx {
namespace {

constexpr int kMostLinks = 40;  // as the system itself counts

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Number() const { return number_; }
  void Release() { number_ = -1; }

 private:
  int number_;
};

PlainFile Refused(int code, std::string reason = {}) { return {nullptr, -1, code, std::move(reason)}; }

std::string KindOf(mode_t mode) {
  if (S_ISFIFO(mode)) return "a named pipe";
  if (S_ISSOCK(mode)) return "a socket";
  return "a device";
}

PlainFile RefusedAs(mode_t mode) {
  if (S_ISDIR(mode)) return Refused(EISDIR);
  return Refused(EINVAL, "is " + KindOf(mode) + ", not a regular file");
}

PlainFile Opened(Descriptor& file, FileUse use) {
  struct stat status {};
  if (fstat(file.Number(), &status) != 0) return Refused(errno);
  if (!S_ISREG(status.st_mode)) return RefusedAs(status.st_mode);
  std::FILE* const stream = fdopen(file.Number(), use == FileUse::Input ? "rb" : "ab");
  if (!stream) return Refused(errno);
  const int descriptor = file.Number();
  file.Release();
  return {std::unique_ptr<std::FILE, PlainFile::CloseStream>(stream), descriptor, 0, {}};
}

// A pipe without a reader and a socket cannot be opened.
PlainFile RefusedBy(int code, const std::string& path) {
  struct stat status {};
  if (code == ENXIO && lstat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) return RefusedAs(status.st_mode);
  return Refused(code);
}

// Sets `path` to the link's target. The owner and the target are read from one opened link, which cannot be replaced in
// between.
PlainFile Follow(std::string& path) {
  const Descriptor link(open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  struct stat status {};
  if (link.Number() < 0 || fstat(link.Number(), &status) != 0) return Refused(errno);
  if (!S_ISLNK(status.st_mode)) return {};  // was replaced by a file: open it again
  if (status.st_uid != 0 && status.st_uid != geteuid()) {
    return Refused(EACCES, "is a symbolic link of the user " + std::to_string(status.st_uid) +
                               "; only links of root and of the program's own user are followed");
  }
  std::array<char, PATH_MAX> target{};
  const ssize_t length = readlinkat(link.Number(), "", target.data(), target.size());
  if (length < 0) return Refused(errno);
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  path = folder / std::string(target.data(), static_cast<std::size_t>(length));
  return {};
}

}  // namespace

PlainFile OpenPlainFile(const std::string& path, FileUse use) {
  const int flags = use == FileUse::Input ? O_RDONLY : O_WRONLY | O_APPEND | O_CREAT;
  std::string target = path;
  for (int links = 0; links <= kMostLinks; ++links) {
    Descriptor file(open(target.c_str(), flags | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666));
    if (file.Number() >= 0) return Opened(file, use);
    if (errno != ELOOP) return RefusedBy(errno, target);
    PlainFile refused = Follow(target);
    if (refused.code != 0) return refused;
  }
  return Refused(ELOOP);
}

}  // namespace qmx
