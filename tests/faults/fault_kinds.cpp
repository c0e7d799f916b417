#include "tests/faults/fault_kinds.h"

namespace qmx::test::faults {

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
      {"kill-write", Maker::Calls, "write+sync+size+name+open+map", 1, "kill", "-", Ending::Killed},
      {"kill-torn", Maker::Calls, "write", 1, "torn", "-", Ending::Killed},
      {"kill-malloc", Maker::Calls, "memory", 1, "kill", "-", Ending::Killed},
      {"term-write", Maker::Calls, "write+sync+size+name+open+map", 1, "term", "-", Ending::Interrupted},
      {"term-malloc", Maker::Calls, "memory", 1, "term", "-", Ending::Interrupted},
      {"component", Maker::Component, "", 1, ""},
      {"component-burst", Maker::Component, "", 3, ""},
      {"component-on", Maker::Component, "", 0, ""},
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
