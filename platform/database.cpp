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

Database::Database(std::vector<Driver*> drivers, DatabaseObservers observers)
    : drivers_(std::move(drivers)), observers_(std::move(observers)) {}

std::unique_ptr<Connection> Database::CreateConnection(std::string_view progId) {
  Require(progId, "ADODB.Connection");
  return std::make_unique<Connection>(drivers_, observers_);
}

std::unique_ptr<Recordset> Database::CreateRecordset(std::string_view progId) {
  Require(progId, "ADODB.Recordset");
  return std::make_unique<Recordset>(observers_);
}

}  // namespace qmx
