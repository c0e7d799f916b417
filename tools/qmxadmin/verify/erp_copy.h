// A full copy of one table into a temporary SQLite database, made by the engine: the local table as it should be.
//
// The table has no key there, only an index on the key's columns, so a record that the ERP lists twice is there twice.
// The copy writes no logs, no event log and nothing to the scheduling server, and keeps its control records in the
// temporary database.
//
// The database's files are unlinked before the first call to the ERP's components. However the process ends, the system
// then frees their space.
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
  // OneRecordAndAudit copies the first record only, and then reads the audit trail as a copy by change does.
  enum class Extent { AllRecords, OneRecordAndAudit };

  // `calendars` are the codes of the service employees' calendars. The ERP lists calendars by these codes. Raises what
  // the copy fails with.
  ErpCopy(const LocalTable& table, const std::string& component, const std::vector<std::string>& calendars,
          Extent extent = Extent::AllRecords);

  DriverSession& Rows() const { return *rows_; }  // a session on the temporary database

  // The first day of the period that the ERP was asked for. Only calendars are listed by period.
  std::optional<DateTime> FirstStartDate() const { return firstStartDate_; }

 private:
  // `listing` is how much the ERP lists. None for a copy by change: the audit reader takes the ERP's own manager only.
  void Copy(std::unique_ptr<DriverSession> session, const LocalTable& table, const std::string& component,
            std::optional<Extent> listing);

  std::unique_ptr<DriverSession> rows_;
  std::optional<DateTime> firstStartDate_;
};

}  // namespace qmx
