// The application's event log.
//
// In the automatic mode (0) entries go to the system log, or to the target file if no system log listens. An entry that
// cannot be written is an error (text_files.h lists the numbers).
#pragma once

#include <string>
#include <string_view>

namespace qmx {

class EventLog {
 public:
  static constexpr int kAutomatic = 0;
  static constexpr int kTypeError = 1;

  virtual ~EventLog() = default;
  virtual void StartLogging(const std::string& target, int mode) = 0;  // target: a file's path text with "\"
  virtual void LogEvent(std::string_view text, int type) = 0;
};

}  // namespace qmx
