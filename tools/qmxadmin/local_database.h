// The local database of a command, open on its default database.
#pragma once

#include <memory>
#include <string>

#include "platform/database.h"
#include "platform/drivers/local_drivers.h"
#include "tools/qmxadmin/database_arguments.h"

namespace qmx {

// What a command does with the local database. Reading needs no right to write.
enum class Purpose { Read, Write };

class LocalDatabase {
 public:
  // Connects and selects the default database. Raises what connecting or selecting raises.
  LocalDatabase(const DatabaseArguments& arguments, Purpose purpose);

  Database& Layer() { return database_; }
  qmx::Connection& Connection() { return *connection_; }

  // Returns a closed record set, for a caller that opens it.
  std::unique_ptr<Recordset> NewRecordset() { return database_.CreateRecordset("ADODB.Recordset"); }

  // Returns the rows of the query. The first row is current.
  std::unique_ptr<Recordset> Select(const SqlText& query);

  // Returns the number in the only row and column of the query.
  double SelectNumber(const SqlText& query);

  // Opens a second session, for work below the record sets: no batches, and keys may hold any text. It is on the
  // default database of the command, or on the one that is named.
  std::unique_ptr<DriverSession> OpenSession();
  std::unique_ptr<DriverSession> OpenSession(const std::string& database);

 private:
  DatabaseArguments arguments_;
  LocalDrivers drivers_;
  Database database_{drivers_.All()};
  std::unique_ptr<qmx::Connection> connection_;
};

// Selects DATABASE, unless it is blank.
void SelectDefaultDatabase(Connection& connection, const std::string& database);

}  // namespace qmx
