// The local database of a command, open on its default database.
#pragma once

#include <memory>

#include "platform/batches/driver.h"
#include "platform/database.h"
#include "platform/odbc/driver.h"
#include "platform/sqlite/driver.h"
#include "tools/qmxadmin/database_arguments.h"

namespace qmx {

class LocalDatabase {
 public:
  // Raises what opening and selecting raise.
  explicit LocalDatabase(const DatabaseArguments& arguments);

  Database& Layer() { return database_; }
  qmx::Connection& Connection() { return *connection_; }

 private:
  SqliteDriver sqlite_;
  OdbcDriver odbc_;
  BatchingDriver batchedSqlite_{sqlite_};
  BatchingDriver batchedOdbc_{odbc_};
  Database database_{{&batchedSqlite_, &batchedOdbc_}};
  std::unique_ptr<qmx::Connection> connection_;
};

}  // namespace qmx
