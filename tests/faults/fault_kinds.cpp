#include "tests/faults/fault_kinds.h"

#include <utility>

namespace qmx::test::faults {
namespace {

constexpr const char* kChangingCalls = "write+sync+size+name+open+map";  // calls that change what others see
constexpr const char* kRefused = "before 40001 1213";
constexpr const char* kLost = "after 08S01 2013";

FaultKind OnAServer(std::string name, std::string calls, int count, std::string action, Ending ending) {
  return {std::move(name), Maker::Calls, std::move(calls), count, std::move(action), "socket:", ending, kServers};
}

FaultKind OfTheDriver(std::string name, std::string function, int count, std::string action) {
  FaultKind kind{std::move(name), Maker::Odbc, std::move(function), count, std::move(action)};
  kind.systems = kServers;
  return kind;
}

FaultKind OfTheLine(std::string name, std::string text, std::string what, unsigned systems = kServers) {
  FaultKind kind{std::move(name), Maker::Line, std::move(text), 1, std::move(what)};
  kind.systems = systems;
  kind.isSlow = kind.action == "silent" || kind.action == "unanswered" || kind.action == "stopped";
  return kind;
}

}  // namespace

const std::vector<FaultKind>& FaultKinds() {
  static const std::vector<FaultKind> kinds = {
      {"write-EIO", Maker::Calls, "write", 1, "EIO"},
      {"write-EIO-on", Maker::Calls, "write", 0, "EIO"},
      {"write-ENOSPC", Maker::Calls, "write", 1, "ENOSPC"},
      {"write-EINTR", Maker::Calls, "write", 1, "EINTR"},
      {"write-short", Maker::Calls, "write", 1, "short"},
      {"sync-EIO", Maker::Calls, "sync", 1, "EIO"},
      {"size-EIO", Maker::Calls, "size", 1, "EIO"},
      {"rename-EIO", Maker::Calls, "name", 1, "EIO"},
      {"open-EMFILE", Maker::Calls, "open", 1, "EMFILE"},
      {"open-EACCES", Maker::Calls, "open", 1, "EACCES"},
      {"read-EIO", Maker::Calls, "read", 1, "EIO"},
      {"map-ENOMEM", Maker::Calls, "map", 1, "ENOMEM"},
      {"full-database", Maker::Calls, "write+size", 0, "full", "local.db$"},
      {"full-journal", Maker::Calls, "write+size", 0, "full", "local.db-"},
      {"full-logs", Maker::Calls, "write+size", 0, "full", "/log/"},
      {"malloc-once", Maker::Calls, "memory", 1, "ENOMEM"},
      {"malloc-burst", Maker::Calls, "memory", 20, "ENOMEM"},
      {"malloc-on", Maker::Calls, "memory", 0, "ENOMEM"},
      {"kill-write", Maker::Calls, kChangingCalls, 1, "kill", "-", Ending::Killed},
      {"kill-torn", Maker::Calls, "write", 1, "torn", "-", Ending::Killed},
      {"kill-malloc", Maker::Calls, "memory", 1, "kill", "-", Ending::Killed},
      {"term-write", Maker::Calls, kChangingCalls, 1, "term", "-", Ending::Interrupted},
      {"term-malloc", Maker::Calls, "memory", 1, "term", "-", Ending::Interrupted},
      {"component", Maker::Component, "", 1, "", "-", Ending::ByItself, kAll},
      {"component-burst", Maker::Component, "", 3, "", "-", Ending::ByItself, kAll},
      {"component-on", Maker::Component, "", 0, "", "-", Ending::ByItself, kAll},
      OnAServer("send-EPIPE", "send", 1, "EPIPE", Ending::ByItself),
      OnAServer("receive-ECONNRESET", "receive", 1, "ECONNRESET", Ending::ByItself),
      OnAServer("receive-EINTR", "receive", 1, "EINTR", Ending::ByItself),
      OnAServer("send-short", "send", 1, "short", Ending::ByItself),
      OnAServer("kill-send", "send+receive", 1, "kill", Ending::Killed),
      OnAServer("kill-torn-send", "send", 1, "torn", Ending::Killed),
      OnAServer("term-send", "send+receive", 1, "term", Ending::Interrupted),
      OfTheDriver("odbc-any", "any", 1, "before HY000 2000"),
      OfTheDriver("odbc-any-lost", "any", 1, kLost),
      OfTheDriver("odbc-statement-refused", "SQLExecute", 1, kRefused),
      OfTheDriver("odbc-statement-lost", "SQLExecute", 1, kLost),
      OfTheDriver("odbc-read-only", "SQLExecute", 0, "before 25006 1290"),
      OfTheDriver("odbc-full", "SQLExecute", 0, "before 53100 1021"),
      OfTheDriver("odbc-mode", "SQLSetConnectAttr", 1, "before HY000 2000"),
      OfTheDriver("commit-refused", "SQLEndTran", 1, kRefused),
      OfTheDriver("commit-refused-on", "SQLEndTran", 0, kRefused),
      OfTheDriver("commit-lost", "SQLEndTran", 1, kLost),
      OfTheDriver("commit-never-sent", "SQLEndTran", 1, "before 08S01 2013"),
      OfTheLine("cut", "", "cut"),
      OfTheLine("half-closed", "", "half-closed"),
      OfTheLine("session-ended", "", "ended"),
      OfTheLine("server-killed", "", "killed", kPostgresql),
      OfTheLine("server-stopped", "", "stopped"),
      OfTheLine("silent", "", "silent"),
      OfTheLine("commit-unanswered", "COMMIT", "unanswered"),
  };
  return kinds;
}

const std::vector<CopyKind>& CopyKinds() {
  static const std::vector<CopyKind> kinds = {{"full", Method::Full, false},
                                              {"changed", Method::Changed, false},
                                              {"whole-full", Method::Full, true},
                                              {"whole-changed", Method::Changed, true}};
  return kinds;
}

}  // namespace qmx::test::faults
