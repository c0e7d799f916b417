// A full copy of one table, made by the engine into a temporary SQLite database: what the ERP lists, as it would stand
// in the local table.
//
// The table has no key there, so that a record that the ERP lists twice stands in it twice, but an index on the key's
// columns. Nothing else is touched: no logs, no event log, no scheduling server, no control records but temporary ones.
//
// The database's files lose their names before the ERP's components are asked for anything. However the process ends,
// the system then removes what the ERP has given.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/database_driver.h"
#include "platform/datetime.h"
#include "schema/local_tables.h"

namespace qmx {

class ErpCopy {
 public:
  // `calendars` are the codes that service employees have: for calendars, those that are listed. Raises what the copy
  // fails with.
  ErpCopy(const LocalTable& table, const std::string& component, const std::vector<std::string>& calendars);

  DriverSession& Rows() const { return *rows_; }  // on the temporary database

  // The first start date that was asked for, where the ERP lists by start dates (calendars), and nothing else is
  // listed.
  std::optional<DateTime> FirstStartDate() const { return firstStartDate_; }

 private:
  void Copy(std::unique_ptr<DriverSession> session, const LocalTable& table, const std::string& component);

  std::unique_ptr<DriverSession> rows_;
  std::optional<DateTime> firstStartDate_;
};

}  // namespace qmx
