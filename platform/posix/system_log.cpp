#include "platform/system/system_log.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <cstring>

#include "platform/event_log.h"

namespace qmx {
namespace {

int Severity(int type) { return type == EventLog::kTypeError ? LOG_ERR : LOG_INFO; }

// The month's name is English in every locale, as readers of the system log expect.
std::string Timestamp(DateTime moment) {
  static constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  char text[32];
  std::snprintf(text, sizeof text, "%s %2d %02d:%02d:%02d", kMonths[moment.Month() - 1], moment.Day(), moment.Hour(),
                moment.Minute(), moment.Second());
  return text;
}

std::string WithPlainLineEnds(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    plain += text[i];
  }
  return plain;
}

bool SendTo(const std::string& path, const std::string& entry) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);

  const int descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (descriptor < 0) return false;
  const timeval limit{2, 0};  // a system log that hangs must not block the copy
  setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
  const ssize_t sent = sendto(descriptor, entry.data(), entry.size(), MSG_NOSIGNAL,
                              reinterpret_cast<const sockaddr*>(&address), sizeof address);
  close(descriptor);
  return sent == static_cast<ssize_t>(entry.size());
}

}  // namespace

std::string UsualSystemLog() { return "/dev/log"; }

std::string SystemLogSender() { return std::string(kSystemLogTag) + "[" + std::to_string(getpid()) + "]: "; }

bool SendToSystemLog(const std::string& systemLog, DateTime now, std::string_view text, int type) {
  const std::string priority = "<" + std::to_string(LOG_USER | Severity(type)) + ">";
  return SendTo(systemLog, priority + Timestamp(now) + " " + SystemLogSender() + WithPlainLineEnds(text));
}

}  // namespace qmx
