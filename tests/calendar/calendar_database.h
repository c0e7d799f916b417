// A local database with the three tables of the calendar expansion, in a file of the test's own, and what was done to
// it.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

#include "calendar/clsCalender.h"
#include "platform/database.h"
#include "platform/drivers/local_drivers.h"
#include "tests/support/call_log.h"
#include "tests/support/recording_observer.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {

// One working-time record: dates as texts, times as hours * 100 + minutes.
struct CalendarRecord {
  const char* stdt;
  const char* endt;
  int sttm;
  int entm;
};

// Where the calls are not logged, intervals may wait for each other on their way to the database.
enum class Calls { Logged, NotLogged };

class CalendarDatabase {
 public:
  // Through the product's drivers, which may be decorated above and below the batches.
  explicit CalendarDatabase(LocalDrivers::Decorate aboveBatches = {}, LocalDrivers::Decorate belowBatches = {},
                            Calls calls = Calls::Logged);
  ~CalendarDatabase();

  void Employee(const std::string& emno, const std::string& ccal);
  void Record(const std::string& ccal, const CalendarRecord& record);
  void Records(const std::string& ccal, const std::vector<CalendarRecord>& records);
  void Execute(const std::string& statements);  // past everything that is under test

  // The intervals of tscalender for one calendar, as "2001-03-05 08:00:00 > 2001-03-05 17:00:00", in the order in which
  // they were written. Read through the same connection, which sees its own rows first, but not logged.
  std::vector<std::string> Intervals(const std::string& ccal);

  void Reopen();  // on a new connection, with a new record set

  // An expansion on this database's connection and record set.
  clsCalender Calender();

  CallLog log;
  Connection& connection() { return *connection_; }
  Recordset& recordset() { return *recordset_; }
  Database& database() { return database_; }

 private:
  TempFolder folder_{TempFolder::Place::InMemory};
  const std::string connectionText_ = "Provider=SQLite;Data Source=" + folder_ / "local.db";
  LocalDrivers drivers_;
  RecordingObserver observer_{log};
  Database database_;
  sqlite3* own_ = nullptr;
  std::unique_ptr<Connection> connection_;
  std::unique_ptr<Recordset> recordset_;
};

}  // namespace qmx::test
