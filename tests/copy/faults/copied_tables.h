// The tables on which faults are tried.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "copy/clsDataCopy.h"
#include "tests/support/copy_rig.h"

namespace qmx::test {

// One table with two local, two listed and three audited rows. Getters that are not named give "7", which every column
// but a date's takes.
struct CopiedTable {
  const char* code;
  const char* manager;
  const char* record;
  const char* listing = "List";
  FailureTexts fullFailure;
  FailureTexts changedFailure;

  // "A" is missing here and inserted by the ERP, "B" is updated, "D" is deleted; listed are "A" and "B".
  std::function<Getters(const std::string& row)> key;
  std::vector<std::string> dates = {};  // getters
  const char* localRows;                // columns and values of B and D
  std::vector<std::string> columns;     // to be compared
  std::function<std::string(const std::string& row, const std::string& value)> shown;
};

inline std::ostream& operator<<(std::ostream& out, const CopiedTable& table) { return out << table.code; }

inline std::string Quoted(const std::string& text) { return '"' + text + '"'; }

const std::vector<CopiedTable>& TablesUnderFaults();

// The table's record of that row as the ERP gives it.
Getters ErpRecord(const CopiedTable& table, const std::string& row, ScriptedErp& erp);

// Fills the local table and its control record, and has the ERP list and audit its records.
void PrepareCopyOf(const CopiedTable& table, std::int16_t syncMethod, CopyRig& rig);

}  // namespace qmx::test
