#include "platform/system/process_identity.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <memory>
#include <string_view>

#include "platform/posix/kernel_file.h"

namespace qmx {
namespace {

// The number at the beginning of the text, after blanks and tabs.
std::optional<std::int64_t> NumberAt(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  std::int64_t number = 0;
  if (std::from_chars(text.data(), text.data() + text.size(), number).ec != std::errc()) return std::nullopt;
  return number;
}

// Does not ask a directory service, because it may be slow or unreachable.
std::string UserName(uid_t number) {
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  const std::unique_ptr<std::FILE, CloseFile> users(std::fopen("/etc/passwd", "re"));
  std::array<char, 4096> buffer{};
  passwd entry{};
  passwd* found = nullptr;
  while (users && fgetpwent_r(users.get(), &entry, buffer.data(), buffer.size(), &found) == 0 && found) {
    if (found->pw_uid == number) return found->pw_name;
  }
  return std::to_string(number);
}

}  // namespace

std::string HostName() {
  std::array<char, 256> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

std::string BootNumber() {
  std::string number = ReadKernelFile("/proc/sys/kernel/random/boot_id");
  number.erase(number.find_last_not_of('\n') + 1);
  return number;
}

std::optional<std::int64_t> StartTicksOf(std::int64_t process) {
  const std::string state = ReadKernelFile("/proc/" + std::to_string(process) + "/stat");
  // The 22nd field. The second, the program's name, may hold blanks and brackets. The third is Z if the process has
  // ended.
  std::size_t place = state.rfind(')');
  if (state.compare(std::min(place, state.size()), 3, ") Z") == 0) return std::nullopt;
  for (int field = 2; field < 22 && place != std::string::npos; ++field) place = state.find(' ', place + 1);
  return place == std::string::npos ? std::nullopt : NumberAt(std::string_view(state).substr(place));
}

ProcessIdentity ThisProcess() {
  const uid_t user = geteuid();
  return {HostName(), getpid(), StartTicksOf(getpid()), BootNumber(), UserName(user), user};
}

// getrusage would include the memory of the program that started this one.
std::optional<std::int64_t> PeakMemoryKib() {
  const std::string state = ReadKernelFile("/proc/self/status");
  constexpr std::string_view kPeak = "\nVmHWM:";
  const std::size_t place = state.find(kPeak);
  return place == std::string::npos ? std::nullopt : NumberAt(std::string_view(state).substr(place + kPeak.size()));
}

}  // namespace qmx
