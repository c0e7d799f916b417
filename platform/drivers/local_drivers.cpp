#include "platform/drivers/local_drivers.h"

namespace qmx {

LocalDrivers::LocalDrivers(const Decorate& below, Watchdog& watchdog)
    : odbc_(watchdog), batchedSqlite_(below ? below(sqlite_) : sqlite_), batchedOdbc_(below ? below(odbc_) : odbc_) {}

}  // namespace qmx
