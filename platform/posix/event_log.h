// The application's event log on a POSIX system: the system log, else the target file.
//
// In the automatic mode each entry goes, as a datagram in the form of syslog(3), to the socket of the system log. The
// line ends of its text are LF there, because a carriage return makes the journal show an entry as binary data. If
// nothing listens at that socket, the entry is appended to the target file as one record with the time, with CR LF.
// No other mode is served (error 5).
//
// Logging does not start if the target's folder is missing (76) or not writable (70, 75), even with a system log: the
// program has its other logs in that folder, and does not begin a run that it could not log.
#pragma once

#include "platform/clock.h"
#include "platform/event_log.h"
#include "platform/text_files.h"

namespace qmx {

class PosixEventLog : public EventLog {
 public:
  PosixEventLog(Clock& clock, TextFiles& files, std::string systemLogSocket = "/dev/log");

  void StartLogging(const std::string& target, int mode) override;
  void LogEvent(std::string_view text, int type) override;

 private:
  Clock& clock_;
  TextFiles& files_;
  std::string systemLogSocket_;
  std::string target_;
};

}  // namespace qmx
