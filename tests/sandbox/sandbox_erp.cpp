#include "tests/sandbox/sandbox_erp.h"

#include "sandbox/erp/schema.h"

namespace qmx::test {

SandboxErp::SandboxErp()
    : path_((folder_.Path() / "orvan.db").string()),
      file_(orvan::Database::Create(path_)),
      components_(clock_, {TEST_COMPONENTS}) {
  std::string sql = "PRAGMA journal_mode = WAL;" + orvan::CreateClockSql();
  for (const orvan::Table& table : orvan::AllTables())
    sql += orvan::CreateTableSql(table) + orvan::CreateAuditSql(table);
  Run("PRAGMA synchronous = OFF; BEGIN;" + sql.substr(sql.find(';') + 1) + "COMMIT;" +
      sql.substr(0, sql.find(';') + 1));
}

void SandboxErp::RunAt(const std::string& moment, const std::string& sql) {
  Run("DELETE FROM sandbox_clock; INSERT INTO sandbox_clock VALUES ('" + moment + "')");
  Run(sql);
  Run("DELETE FROM sandbox_clock");
}

Object SandboxErp::Manager(std::string_view progId) {
  const Object manager = Create(progId);
  manager.Call("initialize", BusinessComponent());
  return manager;
}

Object SandboxErp::Date(DateTime moment) {
  const Object date = Create("java:java.util.Date");
  date.Call("setDate", 1);
  date.Call("setMonth", moment.Month() - 1);
  date.Call("setYear", moment.Year() - 1900);
  date.Call("setDate", moment.Day());
  date.Call("setHours", moment.Hour());
  date.Call("setMinutes", moment.Minute());
  date.Call("setSeconds", moment.Second());
  return date;
}

std::vector<std::string> Rows(const Object& enumeration, const std::vector<std::string>& getters) {
  std::vector<std::string> rows;
  while (enumeration.Call("hasMoreElements").ToBoolean()) {
    const Object record = enumeration.Call("nextElement").ToObject();
    std::string row;
    for (const std::string& getter : getters) {
      if (!row.empty()) row += '|';
      row += record.Call(std::string_view(getter)).ToText();
    }
    rows.push_back(std::move(row));
  }
  return rows;
}

std::string Parts(const Object& date) {
  const auto part = [&](const char* getter) { return std::to_string(date.Call(getter).ToInt32()); };
  return part("getyear") + '-' + part("getMonth") + '-' + part("getDate") + ' ' + part("getHours") + ':' +
         part("getMinutes") + ':' + part("getSeconds");
}

}  // namespace qmx::test
