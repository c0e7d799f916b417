// qmxadmin expand: turns the local calendars into the intervals of tscalender, which no copy does, and tells how many
// there are.

#include <CLI/CLI.hpp>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "calendar/clsCalender.h"
#include "platform/database.h"
#include "platform/odbc/driver.h"
#include "platform/sqlite/driver.h"
#include "tools/qmxadmin/commands.h"

namespace qmx {
namespace {

struct Options {
  std::string connection;
  std::string database;
};

std::map<std::string, std::int32_t> IntervalsByCalendar(Database& database, Connection& connection) {
  const auto rows = database.CreateRecordset("ADODB.Recordset");
  rows->Open("select ccal, count(*) from tscalender group by ccal", connection, kCursorKeyset, kLockOptimistic,
             kCommandText);
  std::map<std::string, std::int32_t> counts;
  for (; !rows->Eof(); rows->MoveNext()) {
    counts[rows->Fields(std::size_t{0}).Value().ToText()] = rows->Fields(std::size_t{1}).Value().ToInt32();
  }
  rows->Close();
  return counts;
}

void Report(const std::vector<std::string>& inUse, std::map<std::string, std::int32_t> counts) {
  if (inUse.empty()) std::cout << "No service employee has a calendar: nothing was expanded.\n";
  for (const std::string& code : inUse) {
    std::cout << code << ": " << counts[code] << " intervals\n";
    counts.erase(code);
  }
  for (const auto& [code, count] : counts) {
    std::cout << code << ": " << count << " intervals, left as they were: no service employee has this calendar\n";
  }
}

AdminStatus Expand(const Options& options) {
  SqliteDriver sqlite;
  OdbcDriver odbc;
  Database database({&sqlite, &odbc});
  const auto connection = database.CreateConnection("ADODB.Connection");
  connection->Open(options.connection, "", "");
  if (options.database.find_first_not_of(' ') != std::string::npos) connection->defaultdatabase(options.database);

  // The expansion passes over what it cannot read or write; a table that is missing should not look like no calendars.
  for (const char* table : {"tsmdm140", "tcccp030", "tscalender"}) connection->Describe(table);

  const auto records = database.CreateRecordset("ADODB.Recordset");
  clsCalender calender(database);
  calender.DBConnection = connection.get();
  calender.DBRecordSet = records.get();
  calender.Startprocess();

  std::vector<std::string> inUse;
  calender.getEmployeeCalenderList(*connection, inUse);
  Report(inUse, IntervalsByCalendar(database, *connection));
  connection->Close();
  return AdminStatus::Done;
}

}  // namespace

void AddExpand(CLI::App& program, AdminStatus& status) {
  CLI::App* expand = program.add_subcommand(
      "expand", "Expand the calendars of service employees into tscalender and count its intervals");
  const auto options = std::make_shared<Options>();
  expand
      ->add_option("CONNECTION", options->connection,
                   "Connection text of the local database, such as \"Provider=SQLite;Data Source=FILE\"")
      ->required();
  expand->add_option("DATABASE", options->database, "Default database; \"\" for the connection's own")->required();
  expand->callback([options, &status] { status = Expand(*options); });
}

}  // namespace qmx
