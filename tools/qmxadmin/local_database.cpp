#include "tools/qmxadmin/local_database.h"

#include "platform/names.h"
#include "platform/open_connection.h"
#include "platform/trim.h"

namespace qmx {
namespace {

// SQLite's own driver must be told. The others open a database as the user's rights permit.
DatabaseArguments For(Purpose purpose, const DatabaseArguments& arguments) {
  const ConnectionText text(arguments.connection);
  if (purpose == Purpose::Write || !SameName(text.Get("Provider").value_or(""), "SQLite")) return arguments;
  return {text.With("Mode", "Read").Text(), arguments.database};
}

}  // namespace

LocalDatabase::LocalDatabase(const DatabaseArguments& arguments, Purpose purpose)
    : arguments_(For(purpose, arguments)), connection_(database_.CreateConnection("ADODB.Connection")) {
  connection_->Open(arguments_.connection, "", "");
  SelectDefaultDatabase(*connection_, arguments_.database);
}

std::unique_ptr<Recordset> LocalDatabase::Select(const SqlText& query) {
  std::unique_ptr<Recordset> rows = NewRecordset();
  rows->Open(query, *connection_, kCursorKeyset, kLockOptimistic, kCommandText);
  return rows;
}

double LocalDatabase::SelectNumber(const SqlText& query) {
  return Select(query)->Fields(std::size_t{0}).Value().ToDouble();
}

std::unique_ptr<DriverSession> LocalDatabase::OpenSession() { return OpenSession(arguments_.database); }

std::unique_ptr<DriverSession> LocalDatabase::OpenSession(const std::string& database) {
  const ConnectionText text(arguments_.connection);
  std::unique_ptr<DriverSession> session = DriverFor(text, drivers_.Unbatched()).Open(text);
  if (!Trimmed(database).empty()) session->SelectCatalog(database);
  return session;
}

void SelectDefaultDatabase(Connection& connection, const std::string& database) {
  if (!Trimmed(database).empty()) connection.defaultdatabase(database);
}

}  // namespace qmx
