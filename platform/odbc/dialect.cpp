#include "platform/odbc/dialect.h"

#include <algorithm>

#include "platform/names.h"

namespace qmx {
namespace {

constexpr GroupLimits kOfWrittenRows{500, std::chrono::milliseconds(40)};

std::vector<OdbcDialect> MakeDialects() {
  OdbcDialect postgresql;
  postgresql.system = "PostgreSQL";
  postgresql.timeoutSetting = "set statement_timeout to #";
  postgresql.timeoutUnitsPerSecond = 1000;
  postgresql.noTimeout = "0";
  postgresql.catalogQuery = "select current_database()";
  postgresql.schemaQuery = "select current_schema()";
  postgresql.integerParameter = "cast(? as integer)";
  postgresql.refusesOutdatedQueries = true;
  postgresql.rowForm = RowForm::ByUnnest;
  postgresql.grouping = kOfWrittenRows;
  // By default the driver has a savepoint of its own for each statement, whose release ends those of the program.
  postgresql.savepointKeyword = "Protocol";
  postgresql.savepointValue = "7.4-0";

  OdbcDialect mariadb;
  mariadb.system = "MariaDB";
  // A backslash is an ordinary letter, names may be in double quotes, and values that do not fit are refused.
  mariadb.settings = {
      "set session sql_mode = concat(@@sql_mode, ',ANSI_QUOTES,NO_BACKSLASH_ESCAPES,STRICT_ALL_TABLES,"
      "ERROR_FOR_DIVISION_BY_ZERO,NO_ZERO_DATE,NO_ZERO_IN_DATE')"};
  // It also ends waits for a lock. The driver ignores its own query time-out.
  mariadb.timeoutSetting = "set session max_statement_time = #";
  mariadb.noTimeout = "0";
  mariadb.catalogQuery = "select database()";
  mariadb.switchesCatalog = true;
  mariadb.utf8Query = "select @@character_set_client = 'utf8mb4' and @@character_set_results = 'utf8mb4'";
  mariadb.warningsAreErrors = true;
  mariadb.rowForm = RowForm::ByArrays;
  mariadb.grouping = kOfWrittenRows;
  mariadb.clusterQuery = "show session variables like 'wsrep_on'";
  mariadb.causalReadsSetting = "set session wsrep_sync_wait = #";
  mariadb.refusals = Refusals::ByNativeCode;
  mariadb.refusalsInACluster = Refusals::ByNativeCodeInACluster;
  mariadb.nonTransactionalTablesQuery =
      "select 1 from information_schema.tables t join information_schema.engines e on e.engine = t.engine"
      " where t.table_schema = database() and e.transactions <> 'YES'";

  OdbcDialect mysql = mariadb;  // the name that older drivers report
  mysql.system = "MySQL";

  OdbcDialect sqlite;
  sqlite.system = "SQLite";
  // The driver accepts a query time-out but ignores it. It waits for locks as its connection text says (Timeout=).
  sqlite.catalogIsFile = true;
  sqlite.keepsMomentsAsTexts = true;
  sqlite.refusals = Refusals::Always;

  OdbcDialect other;
  other.switchesCatalog = true;
  return {postgresql, mariadb, mysql, sqlite, other};
}

}  // namespace

const OdbcDialect& DialectOf(std::string_view system) {
  // Never destroyed: a helper thread may use them while the process ends.
  static const auto& kDialects = *new std::vector<OdbcDialect>(MakeDialects());
  const auto fits = [&](const OdbcDialect& dialect) {
    return SameName(system.substr(0, dialect.system.size()), dialect.system);
  };
  return *std::find_if(kDialects.begin(), kDialects.end(), fits);  // the last one matches every system
}

}  // namespace qmx
