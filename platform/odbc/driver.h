// Databases behind ODBC: every connection text with "Driver=", "DSN=" or "FILEDSN=" and without a "Provider".
//
// The text goes to the driver manager unchanged. Tried with PostgreSQL (psqlodbc), MariaDB (its connector) and
// SQLite; docs/databases.md has a text for each. A database that cannot be reached is -2147467259, a refused log-in
// -2147217843. Errors show no password. The watchdog ends the connection when the server falls silent.
#pragma once

#include "platform/database_driver.h"
#include "platform/odbc/watchdog.h"

namespace qmx {

class OdbcDriver : public Driver {
 public:
  explicit OdbcDriver(Watchdog& watchdog = Watchdog::Usual()) : watchdog_(watchdog) {}  // borrowed
  std::string Form() const override;
  bool Serves(const ConnectionText& text) const override;
  std::unique_ptr<DriverSession> Open(const ConnectionText& text) override;

 private:
  Watchdog& watchdog_;
};

}  // namespace qmx
