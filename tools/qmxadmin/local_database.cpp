#include "tools/qmxadmin/local_database.h"

#include "platform/error.h"
#include "platform/trim.h"

namespace qmx {

LocalDatabase::LocalDatabase(const DatabaseArguments& arguments)
    : connection_(database_.CreateConnection("ADODB.Connection")) {
  connection_->Open(arguments.connection, "", "");
  const bool named = arguments.database.find_first_not_of(' ') != std::string::npos;
  if (named) connection_->defaultdatabase(arguments.database);
}

std::unique_ptr<DriverSession> OpenSession(const std::vector<Driver*>& drivers, const DatabaseArguments& arguments) {
  const ConnectionText text(arguments.connection);
  for (Driver* driver : drivers) {
    if (!driver->Serves(text)) continue;
    std::unique_ptr<DriverSession> session = driver->Open(text);
    if (!Trimmed(arguments.database).empty()) session->SelectCatalog(arguments.database);
    return session;
  }
  throw Error(errors::kInvalidCall, "qmxadmin", "No driver serves the connection text.");
}

}  // namespace qmx
