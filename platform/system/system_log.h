// The log that the operating system keeps for all programs.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/datetime.h"

namespace qmx {

inline constexpr const char* kSystemLogTag = "qmxdatacopy";  // names the program in its entries

std::string UsualSystemLog();  // "/dev/log" on a POSIX system, the name of the event source on Windows

// Returns whether the system log took the entry. `type` is one of EventLog.
bool SendToSystemLog(const std::string& systemLog, DateTime now, std::string_view text, int type);

// "qmxdatacopy[4711]: "
std::string SystemLogSender();

}  // namespace qmx
