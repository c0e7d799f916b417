#include "tests/support/copy_rig.h"

#include <cstdlib>
#include <string_view>

#include "schema/dialect.h"
#include "schema/local_tables.h"
#include "tests/support/decorated_drivers.h"

namespace qmx::test {
namespace {

// A database with the local tables, made once: every test starts with a copy of it.
std::string EmptyDatabase() {
  static const TempFolder folder;
  static const std::string file = [] {
    LocalDrivers drivers;
    Database database(drivers.All());
    const auto connection = database.CreateConnection("ADODB.Connection");
    connection->Open("Provider=SQLite;Mode=Create;Data Source=" + (folder / "empty.db"), "", "");
    for (const LocalTable& table : LocalTables()) connection->Execute(SqliteDialect().CreateTable(table));
    connection->Close();
    return folder / "empty.db";
  }();
  return file;
}

// Whether it does more than write rows.
bool ChangesTables(const std::string& statement) {
  const auto begins = [&](std::string_view word) { return statement.starts_with(word); };
  return begins("create ") || begins("alter ") || begins("drop ");
}

}  // namespace

void RecordingEvents::Add(const std::string& event, std::initializer_list<Variant> values) {
  std::string line = "event " + event;
  const char* separator = " ";
  for (const Variant& value : values) {
    line += separator + Show(value);
    separator = ", ";
  }
  log_.Add(line);
  if (failOn == event) throw Error(1234, "Scheduling server", "The server refused the event " + event + ".");
}

CopyRig::CopyRig(LocalDrivers::Decorate aboveBatches, DecorateComponents decorateComponents,
                 LocalDrivers::Decorate belowBatches, SteadyClock& batchesClock)
    : lent_(LentDatabase::OfTheSystemUnderTest()),
      drivers_(OnlyFor(ConnectionText(), std::move(belowBatches)), Watchdog::Usual(), batchesClock),
      database_(Decorated(drivers_, OnlyFor(ConnectionText(), std::move(aboveBatches))), &observer_),
      platform{clock, files, eventLog, decorateComponents ? decorateComponents(erp) : erp, database_, failures},
      engine(platform, declarations, events) {
  std::filesystem::copy_file(EmptyDatabase(), folder / "local.db");
  const char* const mode = std::getenv("QMX_TEST_COPY_MODE");
  declarations.copiesWhole = mode && std::string_view(mode) == "whole";
}

std::string CopyRig::ConnectionText() const {
  return lent_ ? lent_->Base().ConnectionText() : "Provider=SQLite;Data Source=" + (folder / "local.db");
}

void CopyRig::Run(const std::string& tableName) {
  clsDataCopy run(platform, declarations, events);
  run.StartDataCopy(ConnectionText(), "", tableName, kLogFolder, kComponent);
}

std::string CopyRig::CopyLog(const std::string& tableCode) const {
  const auto text = files.texts.find(kLogFolder + ("\\" + tableCode) + ".log");
  return text == files.texts.end() ? "" : text->second;
}

Connection& CopyRig::QuietConnection() {
  if (lent_) return lent_->Quiet();
  if (quietConnection_.State() == kStateClosed) quietConnection_.Open(ConnectionText(), "", "");
  return quietConnection_;
}

void CopyRig::Sql(const std::string& statement) {
  if (lent_ && ChangesTables(statement)) lent_->TablesAreChanged();
  QuietConnection().Execute(statement);
}

std::vector<std::string> CopyRig::Rows(const std::string& table, const std::vector<std::string>& columns) {
  Recordset rows(nullptr);
  rows.Open("select * from " + table + " order by 1, 2", QuietConnection(), kCursorKeyset, kLockOptimistic,
            kCommandText);
  std::vector<std::string> found;
  for (; !rows.Eof(); rows.MoveNext()) {
    std::string line;
    for (const std::string& column : columns) {
      line += (line.empty() ? "" : ", ") + Show(rows.Fields(std::string_view(column)).Value());
    }
    found.push_back(line);
  }
  return found;
}

void CopyRig::ControlRecord(const std::string& tableCode, int syncMethod, const std::string& lutm) {
  Sql("insert into tstables (tablename, in_use, freq, reqd, syme, lutm) values ('" + tableCode + "', 0, 0, 1, " +
      std::to_string(syncMethod) + ", " + (lutm.empty() ? "null" : "'" + lutm + "'") + ")");
}

std::string CopyRig::Lutm(const std::string& tableCode) {
  const std::vector<std::string> rows = Rows("tstables where tablename = '" + tableCode + "'", {"lutm"});
  return rows.empty() ? "no record" : rows.front();
}

std::string CopyRig::InUse(const std::string& tableCode) {
  const std::vector<std::string> rows = Rows("tstables where tablename = '" + tableCode + "'", {"in_use"});
  return rows.empty() ? "no record" : rows.front();
}

}  // namespace qmx::test
