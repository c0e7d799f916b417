// The process-wide switches of a run. The process entry creates the one instance and passes it on.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/datetime.h"

namespace qmx {

// The status that the process ends with.
enum class ExitStatus {
  Complete = 0,
  CopyFailed = 1,
  StartUpFailed = 2,  // or a failure around the copy: the table was not released, the last update time not written
  Refused = 3,
  NothingToCopy = 4  // there is no such table or calendar kind
};

// What the run did, for its record. A member is empty if the run did not get that far.
struct RunFacts {
  struct Counts {
    std::int32_t inserted = 0;
    std::int32_t updated = 0;
    std::int32_t deleted = 0;
  };

  std::optional<bool> byChange = {};
  std::optional<Counts> counts = {};
  std::optional<DateTime> lastUpdateTime = {};  // the lutm that the run wrote
  std::int64_t retries = 0;                     // how often something was tried again because the database asked for it
};

struct modDeclarations {
  bool ServerMessagesOff = false;    // no message-box or alert text is sent to the scheduling server
  bool HasStatusRequestId = false;   // table status is sent to the scheduling server
  std::int32_t StatusRequestId = 0;  // the request that table status belongs to; the server may write it
  bool copiesInFull = false;         // in full, whatever the table's sync method
  bool copiesWhole = false;          // in one transaction
  std::string CurrentDatabaseName;   // the local connection's default database, for the failure report

  ExitStatus exitStatus = ExitStatus::Complete;
  ExitStatus statusWhenFinished = ExitStatus::Complete;  // what exitStatus becomes when the run counts as finished
  RunFacts facts;
};

}  // namespace qmx
