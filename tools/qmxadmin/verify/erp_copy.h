// A full copy of one table, made by the engine into a temporary SQLite database: what the ERP lists, as it would stand
// in the local table.
//
// The table has no key there, so that a record that the ERP lists twice stands in it twice, but an index on the key's
// columns. Nothing else is touched: no logs, no event log, no scheduling server, no control records but temporary ones.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/datetime.h"
#include "schema/local_tables.h"
#include "tools/qmxadmin/verify/temporary_folder.h"

namespace qmx {

class ErpCopy {
 public:
  // `calendars` are the codes that service employees have: for calendars, those that are listed. Raises what the copy
  // fails with.
  ErpCopy(const LocalTable& table, const std::string& component, const std::vector<std::string>& calendars);

  std::string ConnectionText() const;

  // The first start date that was asked for, where the ERP lists by start dates (calendars), and nothing else is
  // listed.
  std::optional<DateTime> FirstStartDate() const { return firstStartDate_; }

 private:
  void MakeTables(const LocalTable& table, const std::vector<std::string>& calendars);
  void Copy(const LocalTable& table, const std::string& component);

  TemporaryFolder folder_;
  std::optional<DateTime> firstStartDate_;
};

}  // namespace qmx
