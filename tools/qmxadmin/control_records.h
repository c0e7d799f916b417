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
  std::optional<DateTime> lastUpdate;  // lutm; none where it is null or zero
};

// By table code, as it is spelled there. Raises -2147217865 where there is no tstables.
// By table code. Where tstables ignores case, a record stands under its code in small letters, however it is spelled.
std::map<std::string, ControlRecord> ReadControlRecords(LocalDatabase& local);

// Whether tstables takes a code in capitals for the same one in small letters. Tables of older releases do not.
bool TableCodesIgnoreCase(LocalDatabase& local);

// Makes the record where there is none.
void WriteSyncMethod(LocalDatabase& local, const std::string& tableCode, bool byChange);

// Of a record that is there; the rest of it stays.
void WriteReleased(LocalDatabase& local, const std::string& tableCode);

}  // namespace qmx
