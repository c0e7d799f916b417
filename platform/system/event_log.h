// The application's event log: the system log, else the target file.
//
// In the automatic mode each entry goes to the system log. If no system log takes it, it is appended to the target file
// as one record with the time, with CR LF. No other mode is served (error 5).
//
// The system log of a POSIX system is a socket, which gets each entry as a datagram in the form of syslog(3). The line
// ends of its text are LF there, because a carriage return makes the journal show an entry as binary data. The system
// log of Windows is its event log, if the program is registered there as a source (docs/windows.md).
//
// Logging does not start if the target's folder is missing (76) or not writable (70, 75), even with a system log: the
// program has its other logs in that folder, and does not begin a run that it could not log.
#pragma once

#include "platform/clock.h"
#include "platform/event_log.h"
#include "platform/system/system_log.h"
#include "platform/text_files.h"

namespace qmx {

class SystemEventLog : public EventLog {
 public:
  SystemEventLog(Clock& clock, TextFiles& files, std::string systemLog = UsualSystemLog());

  void StartLogging(const std::string& target, int mode) override;
  void LogEvent(std::string_view text, int type) override;

 private:
  Clock& clock_;
  TextFiles& files_;
  std::string systemLog_;
  std::string target_;
};

}  // namespace qmx
