#include "platform/database.h"

#include "platform/error.h"
#include "platform/names.h"

namespace qmx {
namespace {

void Require(std::string_view progId, std::string_view known) {
  if (SameName(progId, known)) return;
  throw Error(errors::kCannotCreateObject, "Database",
              "The database layer cannot create \"" + std::string(progId) + "\"; here it makes \"" +
                  std::string(known) + "\".");
}

}  // namespace

Database::Database(std::vector<Driver*> drivers, DatabaseObserver* observer)
    : drivers_(std::move(drivers)), observer_(observer) {}

std::unique_ptr<Connection> Database::CreateConnection(std::string_view progId) {
  Require(progId, "ADODB.Connection");
  return std::make_unique<Connection>(drivers_, observer_);
}

std::unique_ptr<Recordset> Database::CreateRecordset(std::string_view progId) {
  Require(progId, "ADODB.Recordset");
  return std::make_unique<Recordset>(observer_);
}

}  // namespace qmx
