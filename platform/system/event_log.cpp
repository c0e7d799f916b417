#include "platform/system/event_log.h"

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/error.h"
#include "platform/system/access.h"
#include "platform/system/paths.h"
#include "platform/system/system_errors.h"

namespace qmx {
namespace {

constexpr const char* kLogSource = "Event log";
constexpr int kLogFileNumber = 511;  // not one of the program's own numbers, which may still be open

const char* TypeName(int type) { return type == EventLog::kTypeError ? "Error" : "Information"; }

void RequireFolder(const std::string& target) {
  const std::string file = NativePath(target);
  std::filesystem::path folder = std::filesystem::path(file).parent_path();
  if (folder.empty()) folder = ".";
  std::error_code ignored;
  if (!std::filesystem::is_directory(folder, ignored)) RaiseSystemError(ENOTDIR, kLogSource, file);
  if (const int problem = FolderAccessProblem(folder.string())) RaiseSystemError(problem, kLogSource, file);
}

}  // namespace

SystemEventLog::SystemEventLog(Clock& clock, TextFiles& files, std::string systemLog)
    : clock_(clock), files_(files), systemLog_(std::move(systemLog)) {}

void SystemEventLog::StartLogging(const std::string& target, int mode) {
  if (mode != kAutomatic) {
    throw Error(errors::kInvalidCall, kLogSource,
                "Invalid call: event log mode " + std::to_string(mode) + " is not served, only the automatic mode 0");
  }
  RequireFolder(target);
  target_ = target;
}

void SystemEventLog::LogEvent(std::string_view text, int type) {
  const DateTime now = clock_.Now();
  if (SendToSystemLog(systemLog_, now, text, type)) return;

  if (target_.empty()) {
    throw Error(errors::kInvalidCall, kLogSource, "Invalid call: event logging has not been started");
  }
  files_.OpenForAppend(target_, kLogFileNumber);
  try {
    files_.Print(kLogFileNumber, clock_.DateText(now) + " " + clock_.TimeText(now) + " " + TypeName(type) + " " +
                                     SystemLogSender() + std::string(text));
  } catch (...) {
    try {
      files_.Close(kLogFileNumber);
    } catch (const Error&) {  // the first failure is reported
    }
    throw;
  }
  files_.Close(kLogFileNumber);
}

}  // namespace qmx
