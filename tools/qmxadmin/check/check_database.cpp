#include "tools/qmxadmin/check/check_database.h"

#include <fmt/format.h>

#include <optional>

#include "platform/error.h"
#include "schema/local_tables.h"
#include "tools/qmxadmin/check/check_rights.h"
#include "tools/qmxadmin/control_records.h"
#include "tools/qmxadmin/differences.h"
#include "tools/qmxadmin/find_table.h"
#include "tools/qmxadmin/local_database.h"
#include "tools/qmxadmin/old_midnights.h"

namespace qmx {
namespace {

constexpr const char* kConnection = "connection";
constexpr const char* kDefaultDatabase = "default database";

bool SelectDatabase(Connection& connection, const std::string& database, FindingSink& findings) {
  try {
    SelectDefaultDatabase(connection, database);
    const std::string selected = connection.defaultdatabase();
    if (selected.empty()) {
      findings.Wrong(kDefaultDatabase, "none is selected", "Name one in DATABASE or in CONNECTION.");
      return false;
    }
    findings.Good(kDefaultDatabase, selected);
    return true;
  } catch (const Error& error) {
    findings.Wrong(kDefaultDatabase, error, "Correct DATABASE.");
    return false;
  }
}

// Not a failure, because the copies work either way.
std::string OnCase(LocalDatabase& local, const LocalTable& table) {
  if (table.name != "tstables" || TableCodesIgnoreCase(local)) return "";
  return "; TableName does not ignore case, so a copy of TSMDM030 does not see the flag of tsmdm030";
}

std::string OnOldMidnights(std::int64_t count) {
  return fmt::format(
      "{} {} the form of an older release, as \"2026-11-05\" instead of \"2026-11-05 00:00:00\", so queries that "
      "compare "
      "moments may miss them",
      count, count == 1 ? "midnight has" : "midnights have");
}

void CheckTable(LocalDatabase& local, DriverSession& session, const LocalTable& table, FindingSink& findings) {
  Connection& connection = local.Connection();
  const std::string what = fmt::format("table {}", table.name);
  try {
    const std::optional<TableDescription> found = FindTable(connection, table.name);
    if (!found) {
      findings.Wrong(what, "it is missing", "\"qmxadmin init\" creates it.");
      return;
    }
    const std::vector<std::string> differences = Differences(table, *found);
    for (const std::string& difference : differences) {
      findings.Wrong(what, difference, "\"qmxadmin init --print\" shows the expected definition.");
    }
    const std::int64_t oldMidnights = CountOldMidnights(session, table);
    if (oldMidnights > 0) findings.Wrong(what, OnOldMidnights(oldMidnights), "\"qmxadmin init\" rewrites them.");
    const std::optional<MissingRight> missing = FindMissingRight(local, table);
    if (missing) {
      findings.Wrong(what, fmt::format("{} is refused: {}", missing->statement, missing->error.Description()),
                     "Grant the missing privileges to the user.");
    }
    if (differences.empty() && oldMidnights == 0 && !missing) {
      findings.Good(what, fmt::format("{} columns, as expected{}", found->columns.size(), OnCase(local, table)));
    }
  } catch (const Error& error) {
    findings.Wrong(what, error, "Grant the missing privileges to the user.");
  }
}

}  // namespace

void CheckDatabase(const DatabaseArguments& arguments, FindingSink& findings) {
  std::optional<LocalDatabase> local;
  try {
    local.emplace(DatabaseArguments{arguments.connection, ""}, Purpose::Read);
  } catch (const Error& error) {
    findings.Wrong(kConnection, error, "Correct CONNECTION.");
    return;
  }
  Connection& connection = local->Connection();
  findings.Good(kConnection, connection.System());
  if (!SelectDatabase(connection, arguments.database, findings)) return;
  const auto session = local->OpenSession(arguments.database);
  for (const LocalTable& table : LocalTables()) CheckTable(*local, *session, table, findings);
  session->Close();
}

}  // namespace qmx
