// An event log that writes into a call log, so that the order among other calls shows. A test can make it fail.
#pragma once

#include "platform/error.h"
#include "platform/event_log.h"
#include "tests/support/call_log.h"

namespace qmx::test {

class LoggedEvents : public EventLog {
 public:
  explicit LoggedEvents(CallLog& log) : log_(log) {}

  bool fails = false;

  void StartLogging(const std::string& target, int mode) override {
    log_.Add("eventlog.StartLogging(\"" + target + "\", " + std::to_string(mode) + ")");
    if (fails) throw Error(errors::kPathNotFound, "Event log", "Path not found: " + target);
  }
  void LogEvent(std::string_view text, int type) override {
    log_.Add("eventlog.LogEvent(\"" + std::string(text) + "\", " + std::to_string(type) + ")");
    if (fails) throw Error(errors::kDiskFull, "Event log", "Disk full: evtlog.txt");
  }

 private:
  CallLog& log_;
};

}  // namespace qmx::test
