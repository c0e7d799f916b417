#include "tests/calendar/calendar_database.h"

#include <stdexcept>

#include "tests/support/decorated_drivers.h"

namespace qmx::test {

CalendarDatabase::CalendarDatabase(LocalDrivers::Decorate aboveBatches, LocalDrivers::Decorate belowBatches,
                                   Calls calls)
    : drivers_(OnlyFor(connectionText_, std::move(belowBatches))),
      database_(Decorated(drivers_, OnlyFor(connectionText_, std::move(aboveBatches))),
                calls == Calls::Logged ? &observer_ : nullptr) {
  const std::string file = folder_ / "local.db";
  if (sqlite3_open(file.c_str(), &own_) != SQLITE_OK) throw std::runtime_error("cannot open " + file);
  sqlite3_busy_timeout(own_, 5000);
  Execute("PRAGMA synchronous = OFF");
  Execute("CREATE TABLE tsmdm140 (emno VARCHAR(9) PRIMARY KEY, ccal VARCHAR(9))");
  Execute(
      "CREATE TABLE tcccp030 (ccal VARCHAR(9), ract VARCHAR(9), stdt DATETIME, sttm INTEGER, endt DATETIME, "
      "entm INTEGER)");
  Execute("CREATE TABLE tscalender (ccal VARCHAR(9), sttm DATETIME, entm DATETIME)");
  connection_ = database_.CreateConnection("ADODB.Connection");
  recordset_ = database_.CreateRecordset("ADODB.Recordset");
  connection_->Open(connectionText_, "", "");
  log.Clear();
}

void CalendarDatabase::Reopen() {
  recordset_ = database_.CreateRecordset("ADODB.Recordset");
  connection_ = database_.CreateConnection("ADODB.Connection");
  connection_->Open(connectionText_, "", "");
}

CalendarDatabase::~CalendarDatabase() { sqlite3_close(own_); }

void CalendarDatabase::Employee(const std::string& emno, const std::string& ccal) {
  Execute("INSERT INTO tsmdm140 (emno, ccal) VALUES ('" + emno + "', '" + ccal + "')");
}

void CalendarDatabase::Record(const std::string& ccal, const CalendarRecord& record) {
  Execute("INSERT INTO tcccp030 (ccal, ract, stdt, sttm, endt, entm) VALUES ('" + ccal + "', 'WRK', '" + record.stdt +
          "', " + std::to_string(record.sttm) + ", '" + record.endt + "', " + std::to_string(record.entm) + ")");
}

void CalendarDatabase::Records(const std::string& ccal, const std::vector<CalendarRecord>& records) {
  for (const CalendarRecord& record : records) Record(ccal, record);
}

void CalendarDatabase::Execute(const std::string& statements) {
  if (sqlite3_exec(own_, statements.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw std::runtime_error(statements + ": " + sqlite3_errmsg(own_));
  }
}

std::vector<std::string> CalendarDatabase::Intervals(const std::string& ccal) {
  const CallLog before = log;
  std::vector<std::string> intervals;
  const auto rows = database_.CreateRecordset("ADODB.Recordset");
  rows->Open(SqlText("select sttm, entm from tscalender where ccal = '" + ccal + "' order by rowid"), *connection_,
             kCursorKeyset, kLockOptimistic, kCommandText);
  for (; !rows->Eof(); rows->MoveNext()) {
    intervals.push_back(rows->Fields("sttm").Value().ToText() + " > " + rows->Fields("entm").Value().ToText());
  }
  rows->Close();
  log = before;
  return intervals;
}

clsCalender CalendarDatabase::Calender() {
  clsCalender calender(database_);
  calender.DBConnection = connection_.get();
  calender.DBRecordSet = recordset_.get();
  return calender;
}

}  // namespace qmx::test
