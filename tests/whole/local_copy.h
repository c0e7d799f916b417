// A local database with all tables, into which the real engine copies from the sandbox ERP, in this process and at the
// time that a set clock shows.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/components/installed_components.h"
#include "platform/database.h"
#include "platform/drivers/local_drivers.h"
#include "platform/trace/trace.h"
#include "platform/trace/traced_components.h"
#include "tests/support/copy_rig.h"
#include "tests/support/fake_clock.h"
#include "tests/support/memory_files.h"
#include "tests/support/temp_folder.h"
#include "tests/whole/company.h"

namespace qmx::test {

// All seventeen, employees before calendars: only calendars that local employees use are copied.
const std::vector<std::string>& CopiedTables();

using Row = std::map<std::string, std::string>;  // values by column; "null" for none
using Rows = std::map<std::string, Row>;         // by key

class LocalCopy {
 public:
  // Company and clock are borrowed. The ERP's component servers are those of the folder.
  LocalCopy(const Company& company, FakeClock& clock, const std::string& componentFolder = SANDBOX_COMPONENTS);

  std::string File() const { return folder_ / "local.db"; }
  std::string ConnectionText() const { return "Provider=SQLite;Data Source=" + File(); }

  // One run, with an engine and drivers of its own; the driver below the batches may be decorated. Raises
  // std::runtime_error with the chain of causes unless the run reports that it is complete.
  void Copy(const std::string& table, LocalDrivers::Decorate belowBatches = {});
  void CopyAll();
  void ByChange();                              // all tables, from now on
  void InOneTransaction() { isWhole_ = true; }  // every copy from now on
  void Expand();                                // the calendars into tscalender

  // Writes every call on components to a trace in that file from now on.
  void TraceTo(const std::string& file);

  void Sql(const std::string& statement);
  std::string Value(const std::string& query);
  std::set<std::string> Values(const std::string& query);  // of the first column
  Rows RowsOf(const std::string& table, const std::string& condition = "1=1");

  const std::vector<std::string>& Counts() const { return counts_; }  // inserted, updated, deleted by the last run

 private:
  void OnRows(const std::string& query, const std::function<void(Recordset&)>& work);

  const Company& company_;
  FakeClock& clock_;
  TempFolder folder_;
  CallLog calls_;
  MemoryFiles files_{calls_};
  RecordingEventLog eventLog_;
  LocalDrivers drivers_;
  Database database_{drivers_.All()};
  InstalledComponents components_;
  std::unique_ptr<Trace> trace_;
  std::unique_ptr<TracedComponents> traced_;
  std::vector<std::string> counts_;
  bool isWhole_ = false;
};

// Where two copies of a table differ, as "tscfg220 CFG00001: tecr is null and not EM0003".
std::vector<std::string> Differences(const std::string& table, const Rows& rows, const Rows& expected);

}  // namespace qmx::test
