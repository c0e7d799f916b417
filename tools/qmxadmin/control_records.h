// The control records of tstables, as the copies read and write them.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "platform/datetime.h"
#include "tools/qmxadmin/local_database.h"

namespace qmx {

struct ControlRecord {
  bool inProgress = false;             // in_use is 1
  bool byChange = false;               // syme is 2
  std::optional<DateTime> lastUpdate;  // lutm; empty if it is null or zero
};

// Returns the records by table code. If tstables ignores case, the codes are in small letters. Otherwise they are
// spelled as in tstables. Raises -2147217865 if there is no table tstables.
std::map<std::string, ControlRecord> ReadControlRecords(LocalDatabase& local);

// Returns whether tstables treats TSMDM030 and tsmdm030 as the same code. Tables of older releases do not.
bool TableCodesIgnoreCase(LocalDatabase& local);

// Sets the sync method. Adds the record if there is none.
void WriteSyncMethod(LocalDatabase& local, const std::string& tableCode, bool byChange);

// Clears the in-progress flag of an existing record, and changes nothing else.
void WriteReleased(LocalDatabase& local, const std::string& tableCode);

// The word for a sync method: "changed" or "full".
inline const char* MethodWord(bool byChange) { return byChange ? "changed" : "full"; }

}  // namespace qmx
