#include "platform/drivers/local_drivers.h"

namespace qmx {

LocalDrivers::LocalDrivers(const Decorate& below, Watchdog& watchdog, SteadyClock& clock)
    : odbc_(watchdog),
      batchedSqlite_(below ? below(sqlite_) : sqlite_, clock),
      batchedOdbc_(below ? below(odbc_) : odbc_, clock) {}

}  // namespace qmx
