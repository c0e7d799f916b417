// Everything of the machine that the logic may touch, handed from room to room. Borrowed: whoever builds it keeps it
// alive.
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
