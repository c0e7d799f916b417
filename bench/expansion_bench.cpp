// What the expansion of calendars costs, as a multiple of the time that SQLite alone needs for the same rows in the
// same file.
//
//   expansion_bench [CALENDARS [YEARS]]     200 calendars of ten years unless said otherwise
//
// A calendar has a morning and an afternoon from Monday to Friday, every week. SQLite alone means its own interface:
// one prepared statement, values bound, a transaction for each calendar. Each way is taken three times, the fastest
// counts.
#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "calendar/clsCalender.h"
#include "platform/database.h"
#include "platform/sqlite/driver.h"
#include "schema/dialect.h"

namespace {

using qmx::DateTime;

constexpr int kRounds = 3;

class Sqlite {
 public:
  explicit Sqlite(const std::string& file) {
    if (sqlite3_open(file.c_str(), &handle_) != SQLITE_OK) Fail(file);
    Execute("PRAGMA journal_mode = WAL");
    Execute("PRAGMA synchronous = NORMAL");
  }
  ~Sqlite() { sqlite3_close(handle_); }
  Sqlite(const Sqlite&) = delete;
  Sqlite& operator=(const Sqlite&) = delete;

  void Execute(const std::string& statement) {
    if (sqlite3_exec(handle_, statement.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) Fail(statement);
  }
  sqlite3_stmt* Prepare(const std::string& statement) {
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(handle_, statement.c_str(), -1, &prepared, nullptr) != SQLITE_OK) Fail(statement);
    return prepared;
  }
  void Run(sqlite3_stmt* statement, const std::vector<std::string>& values) {
    for (int i = 0; i < static_cast<int>(values.size()); ++i) {
      const std::string& value = values[static_cast<std::size_t>(i)];
      sqlite3_bind_text(statement, i + 1, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
    }
    if (sqlite3_step(statement) != SQLITE_DONE) Fail("insert");
    sqlite3_reset(statement);
  }

 private:
  [[noreturn]] void Fail(const std::string& what) { throw std::runtime_error(what + ": " + sqlite3_errmsg(handle_)); }
  sqlite3* handle_ = nullptr;
};

std::string Code(int calendar) { return "C" + std::to_string(1000 + calendar); }

void MakeCalendars(Sqlite& local, int calendars, int years) {
  for (const qmx::LocalTable& table : qmx::LocalTables()) {
    local.Execute(qmx::SqliteDialect().CreateTable(table));
    for (const std::string& index : qmx::SqliteDialect().CreateIndexes(table)) local.Execute(index);
  }
  local.Execute("BEGIN");
  sqlite3_stmt* employee = local.Prepare("INSERT INTO tsmdm140 (emno, ccal) VALUES (?, ?)");
  sqlite3_stmt* record =
      local.Prepare("INSERT INTO tcccp030 (ccal, ract, stdt, sttm, endt, entm) VALUES (?, 'WRK', ?, ?, ?, ?)");
  const DateTime end = DateTime::FromDate(2026 + years, 1, 1);
  for (int calendar = 0; calendar < calendars; ++calendar) {
    local.Run(employee, {std::to_string(calendar), Code(calendar)});
    for (DateTime monday = DateTime::FromDate(2026, 1, 5); monday < end; monday = monday.PlusDays(7)) {
      const std::string friday = monday.PlusDays(4).ToText();
      local.Run(record, {Code(calendar), monday.ToText(), "800", friday, "1200"});
      local.Run(record, {Code(calendar), monday.ToText(), "1230", friday, "1630"});
    }
  }
  sqlite3_finalize(employee);
  sqlite3_finalize(record);
  local.Execute("COMMIT");
}

template <typename Work>
double Seconds(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void Expand(const std::string& file) {
  qmx::SqliteDriver driver;
  qmx::Database database({&driver});
  const auto connection = database.CreateConnection("ADODB.Connection");
  const auto records = database.CreateRecordset("ADODB.Recordset");
  connection->Open("Provider=SQLite;Data Source=" + file, "", "");
  qmx::clsCalender calender(database);
  calender.DBConnection = connection.get();
  calender.DBRecordSet = records.get();
  calender.Startprocess();
  connection->Close();
}

struct Interval {
  std::string sttm;
  std::string entm;
};
using Calendar = std::pair<std::string, std::vector<Interval>>;

std::vector<Calendar> ReadIntervals(Sqlite& local) {
  std::vector<Calendar> calendars;
  sqlite3_stmt* rows = local.Prepare("SELECT ccal, sttm, entm FROM tscalender ORDER BY rowid");
  const auto text = [&](int column) {
    return std::string(reinterpret_cast<const char*>(sqlite3_column_text(rows, column)));
  };
  while (sqlite3_step(rows) == SQLITE_ROW) {
    const std::string code = text(0);
    if (calendars.empty() || calendars.back().first != code) calendars.push_back({code, {}});
    calendars.back().second.push_back({text(1), text(2)});
  }
  sqlite3_finalize(rows);
  return calendars;
}

void InsertAlone(const std::string& file, const std::vector<Calendar>& calendars) {
  Sqlite local(file);
  sqlite3_stmt* insert = local.Prepare("INSERT INTO tscalender (ccal, sttm, entm) VALUES (?, ?, ?)");
  for (const auto& [code, intervals] : calendars) {
    local.Execute("BEGIN");
    for (const Interval& interval : intervals) local.Run(insert, {code, interval.sttm, interval.entm});
    local.Execute("COMMIT");
  }
  sqlite3_finalize(insert);
}

void Measure(const std::string& file, int calendars, int years) {
  Sqlite local(file);
  MakeCalendars(local, calendars, years);
  double expansion = 1e9;
  double alone = 1e9;
  std::size_t rows = 0;
  for (int round = 0; round < kRounds; ++round) {
    local.Execute("DELETE FROM tscalender");
    expansion = std::min(expansion, Seconds([&] { Expand(file); }));
    const std::vector<Calendar> expanded = ReadIntervals(local);
    rows = 0;
    for (const Calendar& calendar : expanded) rows += calendar.second.size();
    local.Execute("DELETE FROM tscalender");
    alone = std::min(alone, Seconds([&] { InsertAlone(file, expanded); }));
  }
  std::cout << calendars << " calendars of " << years << " years, " << rows << " intervals\n"
            << "expansion     " << expansion << " s\n"
            << "SQLite alone  " << alone << " s\n"
            << "ratio         " << expansion / alone << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  const auto folder =
      std::filesystem::temp_directory_path() / ("expansion-bench-" + std::to_string(std::time(nullptr)));
  int status = 0;
  try {
    const int calendars = argc > 1 ? std::stoi(argv[1]) : 200;
    const int years = argc > 2 ? std::stoi(argv[2]) : 10;
    std::filesystem::create_directory(folder);
    Measure((folder / "local.db").string(), calendars, years);
  } catch (const std::exception& failure) {
    std::cerr << "expansion_bench: " << failure.what() << '\n';
    status = 1;
  }
  std::filesystem::remove_all(folder);
  return status;
}
