#include "tests/support/copy_rig.h"

namespace qmx::test {
namespace {

constexpr const char* kLocalTables[] = {
    "tstables (TableName text primary key, in_use smallint default 0, freq smallint default 0, reqd smallint default "
    "0, syme smallint default 0, lutm datetime)",
    "tsmdm030 (cstp text primary key, dsca text, prod text, ract text)",
    "tsmdm100 (cwoc text primary key, dsca text, wctp text, cmwc text, cwar text, clrt text, srtp text, srep text)",
    "tsmdm105 (csar text primary key, dsca text, artp text, cmsa text, cwoc text, cwar text, trti double, dist double, "
    "ccha double, CCur text, clrt text)",
    "tsmdm130 (skll text primary key, dsca text, clrt text)",
    "tsmdm135 (emno text, skll text, cogr text, afct double, primary key (emno, skll, cogr))",
    "tsmdm140 (emno text primary key, dsca text, cwoc text, ccal text, frmn text, csar text, ccar text, ouser text, "
    "mpod double)",
    "tsclm020 (crtc text primary key, dsca text, ccal text, rctt double, enst double, sltn double)",
    "tsclm024 (sltt double primary key, dsca text)",
    "tccom130 (cadr text primary key, nama text, namc text, hono text, Name text, pstc text)",
    "tcccp030 (ccal text, ract text, stdt datetime, sttm integer, endt datetime, entm integer, cutm double, ccap "
    "double, ustm datetime, uftm datetime, ahrs text, primary key (ccal, ract, stdt, sttm))",
};

// A database with the local tables, made once: every test starts with a copy of it.
std::string EmptyDatabase() {
  static const TempFolder folder;
  static const std::string file = [] {
    SqliteDriver sqlite;
    Database database({&sqlite});
    const auto connection = database.CreateConnection("ADODB.Connection");
    connection->Open("Provider=SQLite;Mode=Create;Data Source=" + (folder / "empty.db"), "", "");
    for (const char* table : kLocalTables) connection->Execute(std::string("create table ") + table);
    connection->Close();
    return folder / "empty.db";
  }();
  return file;
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
    : database_({decorateDriver ? &decorateDriver(sqlite_) : &sqlite_}, &observer_),
      quietDatabase_({&sqlite_}),
      platform{clock, files, eventLog, decorateComponents ? decorateComponents(erp) : erp, database_, failures},
      engine(platform, declarations, events) {
  std::filesystem::copy_file(EmptyDatabase(), folder / "local.db");
}

std::string CopyRig::ConnectionText() const { return "Provider=SQLite;Data Source=" + (folder / "local.db"); }

void CopyRig::Run(const std::string& tableName) {
  clsDataCopy run(platform, declarations, events);
  run.StartDataCopy(ConnectionText(), "", tableName, kLogFolder, kComponent);
}

std::string CopyRig::CopyLog(const std::string& tableCode) const {
  const auto text = files.texts.find(kLogFolder + ("\\" + tableCode) + ".log");
  return text == files.texts.end() ? "" : text->second;
}

void CopyRig::Sql(const std::string& statement) {
  const auto connection = quietDatabase_.CreateConnection("ADODB.Connection");
  connection->Open(ConnectionText(), "", "");
  connection->Execute(statement);
  connection->Close();
}

std::vector<std::string> CopyRig::Rows(const std::string& table, const std::vector<std::string>& columns) {
  const auto connection = quietDatabase_.CreateConnection("ADODB.Connection");
  connection->Open(ConnectionText(), "", "");
  const auto rows = quietDatabase_.CreateRecordset("ADODB.Recordset");
  rows->Open("select * from " + table + " order by 1, 2", *connection, kCursorKeyset, kLockOptimistic, kCommandText);
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
