// The drivers of the local database, as every program uses them: SQLite's and ODBC's, each in a BatchingDriver.
//
// `below` may decorate the database drivers: it gets each of them, and returns the one that the batches use. The
// watchdog guards ODBC's connections.
#pragma once

#include <functional>
#include <vector>

#include "platform/batches/driver.h"
#include "platform/odbc/driver.h"
#include "platform/odbc/watchdog.h"
#include "platform/sqlite/driver.h"

namespace qmx {

class LocalDrivers {
 public:
  using Decorate = std::function<Driver&(Driver&)>;

  explicit LocalDrivers(const Decorate& below = {}, Watchdog& watchdog = Watchdog::Usual(),
                        SteadyClock& clock = SteadyClock::OfTheSystem());  // borrowed

  std::vector<Driver*> All() { return {&batchedSqlite_, &batchedOdbc_}; }
  std::int64_t Retries() const { return batchedSqlite_.Retries() + batchedOdbc_.Retries(); }
  std::vector<Driver*> Unbatched() { return {&sqlite_, &odbc_}; }  // without what `below` put there

 private:
  SqliteDriver sqlite_;
  OdbcDriver odbc_;
  BatchingDriver batchedSqlite_;
  BatchingDriver batchedOdbc_;
};

}  // namespace qmx
