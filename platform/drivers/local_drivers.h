// The drivers of the local database, as every program uses them: SQLite's and ODBC's, each with batches around it.
//
// `below` puts a driver of its own between the batches and a database's driver. It is given each of them in turn, and
// returns what the batches are to use. The watchdog is that of ODBC's connections.
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

  explicit LocalDrivers(const Decorate& below = {}, Watchdog& watchdog = Watchdog::Usual());  // borrowed

  std::vector<Driver*> All() { return {&batchedSqlite_, &batchedOdbc_}; }

 private:
  SqliteDriver sqlite_;
  OdbcDriver odbc_;
  BatchingDriver batchedSqlite_;
  BatchingDriver batchedOdbc_;
};

}  // namespace qmx
