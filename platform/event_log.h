// The application's event log.
//
// In the automatic mode (0) entries go to the system log where one listens, otherwise to the target file. An entry that
// cannot be written is an error like any other (text_files.h gives the numbers).
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
