#include "tests/support/copy_rig.h"

#include <cstdlib>
#include <stdexcept>

#include "schema/dialect.h"
#include "schema/local_tables.h"

namespace qmx::test {
namespace {

// A database with the local tables, made once: every test starts with a copy of it.
std::string EmptyDatabase() {
  static const TempFolder folder;
  static const std::string file = [] {
    SqliteDriver sqlite;
    Database database({&sqlite});
    const auto connection = database.CreateConnection("ADODB.Connection");
    connection->Open("Provider=SQLite;Mode=Create;Data Source=" + (folder / "empty.db"), "", "");
    for (const LocalTable& table : LocalTables()) connection->Execute(SqliteDialect().CreateTable(table));
    connection->Close();
    return folder / "empty.db";
  }();
  return file;
}

// An empty database of the system that the run of these tests is about; null for SQLite's own driver.
std::unique_ptr<TestDatabase> DatabaseUnderTest() {
  const char* system = std::getenv("QMX_TEST_COPY_OVER");
  if (!system) return nullptr;
  const std::vector<DriverUnderTest> found =
      DriversUnderTest([&](const DriverUnderTest& driver) { return driver.name == system; });
  if (found.empty()) throw std::runtime_error(std::string("there is no ") + system + " for the tests");
  std::unique_ptr<TestDatabase> base = found[0].make();
  Connection connection({&base->GetDriver()}, nullptr);
  connection.Open(base->ConnectionText(), "", "");
  for (const LocalTable& table : LocalTables()) {
    connection.Execute(DialectOfSystem(connection.System())->CreateTable(table));
  }
  return base;
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

CopyRig::CopyRig(std::function<Driver&(Driver&)> decorateDriver,
                 std::function<Components&(Components&)> decorateComponents)
    : base_(DatabaseUnderTest()),
      driver_(base_ ? base_->GetDriver() : sqlite_),
      database_({decorateDriver ? &decorateDriver(driver_) : &driver_, &sqlite_}, &observer_),
      quietDatabase_({&driver_}),
      platform{clock, files, eventLog, decorateComponents ? decorateComponents(erp) : erp, database_, failures},
      engine(platform, declarations, events) {
  std::filesystem::copy_file(EmptyDatabase(), folder / "local.db");
}

std::string CopyRig::ConnectionText() const {
  return base_ ? base_->ConnectionText() : "Provider=SQLite;Data Source=" + (folder / "local.db");
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
  if (!quietConnection_) {
    quietConnection_ = quietDatabase_.CreateConnection("ADODB.Connection");
    quietConnection_->Open(ConnectionText(), "", "");
  }
  return *quietConnection_;
}

void CopyRig::Sql(const std::string& statement) { QuietConnection().Execute(statement); }

std::vector<std::string> CopyRig::Rows(const std::string& table, const std::vector<std::string>& columns) {
  const auto rows = quietDatabase_.CreateRecordset("ADODB.Recordset");
  rows->Open("select * from " + table + " order by 1, 2", QuietConnection(), kCursorKeyset, kLockOptimistic,
             kCommandText);
  std::vector<std::string> found;
  for (; !rows->Eof(); rows->MoveNext()) {
    std::string line;
    for (const std::string& column : columns) {
      line += (line.empty() ? "" : ", ") + Show(rows->Fields(std::string_view(column)).Value());
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
