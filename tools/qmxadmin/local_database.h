// The local database of a command, open on its default database.
#pragma once

#include <memory>
#include <vector>

#include "platform/database.h"
#include "platform/drivers/local_drivers.h"
#include "tools/qmxadmin/database_arguments.h"

namespace qmx {

class LocalDatabase {
 public:
  // Raises what opening and selecting raise.
  explicit LocalDatabase(const DatabaseArguments& arguments);

  Database& Layer() { return database_; }
  qmx::Connection& Connection() { return *connection_; }

 private:
  LocalDrivers drivers_;
  Database database_{drivers_.All()};
  std::unique_ptr<qmx::Connection> connection_;
};

// Opens a session of its own on the database, without batches and without a record set's rules.
std::unique_ptr<DriverSession> OpenSession(const std::vector<Driver*>& drivers, const DatabaseArguments& arguments);

}  // namespace qmx
