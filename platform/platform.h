// The interfaces through which the logic reaches the machine. All are borrowed from the process entry.
#pragma once

namespace qmx {

class Clock;
class Components;
class Database;
class EventLog;
class FailureReport;
class TextFiles;

struct Platform {
  Clock& clock;
  TextFiles& files;
  EventLog& eventLog;
  Components& components;
  Database& database;
  FailureReport& failures;
};

}  // namespace qmx
