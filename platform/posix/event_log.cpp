#include "platform/system/event_log.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include "platform/error.h"
#include "platform/system/paths.h"
#include "platform/system/system_errors.h"

namespace qmx {
namespace {

constexpr const char* kSource = "Event log";
constexpr const char* kTag = "qmxdatacopy";
constexpr int kFileNumber = 511;  // not one of the program's own numbers, which may still be open

const char* TypeName(int type) { return type == EventLog::kTypeError ? "Error" : "Information"; }

int Severity(int type) { return type == EventLog::kTypeError ? LOG_ERR : LOG_INFO; }

std::string Sender() { return std::string(kTag) + "[" + std::to_string(getpid()) + "]: "; }

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

void RequireFolder(const std::string& target) {
  const std::string file = NativePath(target);
  std::filesystem::path folder = std::filesystem::path(file).parent_path();
  if (folder.empty()) folder = ".";
  std::error_code ignored;
  if (!std::filesystem::is_directory(folder, ignored)) RaiseSystemError(ENOTDIR, kSource, file);
  if (access(folder.c_str(), W_OK | X_OK) != 0) RaiseSystemError(errno, kSource, file);
}

// Returns whether the system log took the entry.
bool SendToSystemLog(const std::string& path, const std::string& entry) {
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

std::string SystemEventLog::UsualSystemLog() { return "/dev/log"; }

SystemEventLog::SystemEventLog(Clock& clock, TextFiles& files, std::string systemLog)
    : clock_(clock), files_(files), systemLog_(std::move(systemLog)) {}

void SystemEventLog::StartLogging(const std::string& target, int mode) {
  if (mode != kAutomatic) {
    throw Error(errors::kInvalidCall, kSource,
                "Invalid call: event log mode " + std::to_string(mode) + " is not served, only the automatic mode 0");
  }
  RequireFolder(target);
  target_ = target;
}

void SystemEventLog::LogEvent(std::string_view text, int type) {
  const DateTime now = clock_.Now();
  const std::string priority = "<" + std::to_string(LOG_USER | Severity(type)) + ">";
  if (SendToSystemLog(systemLog_, priority + Timestamp(now) + " " + Sender() + WithPlainLineEnds(text))) return;

  if (target_.empty()) {
    throw Error(errors::kInvalidCall, kSource, "Invalid call: event logging has not been started");
  }
  files_.OpenForAppend(target_, kFileNumber);
  try {
    files_.Print(kFileNumber, clock_.DateText(now) + " " + clock_.TimeText(now) + " " + TypeName(type) + " " +
                                  Sender() + std::string(text));
  } catch (...) {
    try {
      files_.Close(kFileNumber);
    } catch (const Error&) {  // the first failure is reported
    }
    throw;
  }
  files_.Close(kFileNumber);
}

}  // namespace qmx
