// Creates a sandbox file: the tables, their data, and last the audit trail, which therefore begins empty.
//
// The same plan makes the same content on every machine. The file gets its name when it is
// complete.
#pragma once

#include <string>
#include <vector>

#include "tool/world.h"

namespace orvan {

struct TableCount {
  std::string code;
  std::string description;
  long long records;
};

// How many records each table has, in the order of AllTables.
std::vector<TableCount> CountRecords(const std::string& path);

// An existing file of that name is an error, unless it may be replaced.
void MakeSandbox(const std::string& path, const Plan& plan, bool replace);

}  // namespace orvan
