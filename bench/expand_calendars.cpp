// expand_calendars LOCAL: expands the calendars of an SQLite file, without the rest of qmxadmin.
#include <iostream>

#include "calendar/clsCalender.h"
#include "platform/batches/driver.h"
#include "platform/database.h"
#include "platform/error.h"
#include "platform/sqlite/driver.h"

namespace {

void Expand(const std::string& path) {
  qmx::SqliteDriver sqlite;
  qmx::BatchingDriver driver(sqlite);
  qmx::Database database({&driver});
  const auto connection = database.CreateConnection("ADODB.Connection");
  const auto records = database.CreateRecordset("ADODB.Recordset");
  connection->Open("Provider=SQLite;Data Source=" + path, "", "");
  qmx::clsCalender calender(database);
  calender.DBConnection = connection.get();
  calender.DBRecordSet = records.get();
  calender.Startprocess();
  connection->Close();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: expand_calendars LOCAL\n";
    return 2;
  }
  try {
    Expand(argv[1]);
  } catch (const qmx::Error& failure) {
    std::cerr << "expand_calendars: " << failure.Description() << '\n';
    return 1;
  }
}
