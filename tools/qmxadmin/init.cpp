#include "tools/qmxadmin/init.h"

#include <fmt/format.h>

#include <iostream>
#include <nlohmann/json.hpp>
#include <string>

#include "platform/connection_text.h"
#include "platform/database.h"
#include "platform/error.h"
#include "platform/names.h"
#include "schema/dialect.h"
#include "tools/qmxadmin/differences.h"
#include "tools/qmxadmin/find_table.h"
#include "tools/qmxadmin/json_output.h"
#include "tools/qmxadmin/local_database.h"
#include "tools/qmxadmin/old_midnights.h"

namespace qmx {
namespace {

const Dialect& RequireDialect(const std::string& system) {
  if (const Dialect* dialect = DialectOfSystem(system)) return *dialect;
  throw Error(errors::kInvalidCall, "qmxadmin",
              fmt::format("The tables can be created in SQLite, PostgreSQL and MariaDB, not in \"{}\".", system));
}

bool IsEmbedded(const ConnectionText& text) { return SameName(text.Get("Provider").value_or(""), "SQLite"); }

void Print(const Dialect& dialect) {
  for (const LocalTable& table : LocalTables()) {
    const std::vector<std::string> ofAnyCase = dialect.CreateTableOfAnyCase(table);
    for (const std::string& statement : ofAnyCase) std::cout << statement << ";\n";
    if (ofAnyCase.empty()) std::cout << dialect.CreateTable(table) << ";\n";
    for (const std::string& index : dialect.CreateIndexes(table)) std::cout << index << ";\n";
  }
}

// The server may lack the collation that ignores the case of table codes, or the user may lack the right to create it.
// Then the table gets a plain column, which "check" reports.
void CreateTable(Connection& connection, const Dialect& dialect, const LocalTable& table) {
  const std::vector<std::string> ofAnyCase = dialect.CreateTableOfAnyCase(table);
  try {
    for (const std::string& statement : ofAnyCase) connection.Execute(statement);
    if (!ofAnyCase.empty()) return;
  } catch (const Error&) {
  }
  connection.Execute(dialect.CreateTable(table));
}

// Runs no statement that creates if the index exists, because the user may lack the right to create.
void ProvideIndexes(LocalDatabase& local, const Dialect& dialect, const LocalTable& table) {
  const std::vector<std::string> statements = dialect.CreateIndexes(table);
  if (statements.empty() || local.SelectNumber(dialect.CountIndexes(table)) == static_cast<double>(statements.size()))
    return;
  for (const std::string& statement : statements) local.Connection().Execute(statement);
}

struct Outcome {
  std::string table;
  const char* state;  // "created", "exists" or "differs"
  std::vector<std::string> differences;
};

// Creates the table, or finds out whether copies can use the existing one.
Outcome Provide(LocalDatabase& local, const Dialect& dialect, const LocalTable& table) {
  const std::optional<TableDescription> found = FindTable(local.Connection(), table.name);
  if (!found) CreateTable(local.Connection(), dialect, table);
  std::vector<std::string> differences = found ? Differences(table, *found) : std::vector<std::string>();
  if (differences.empty()) ProvideIndexes(local, dialect, table);
  return {table.name, !found ? "created" : differences.empty() ? "exists" : "differs", std::move(differences)};
}

void PrintLines(const Outcome& outcome) {
  std::cout << fmt::format("{}: {}\n", outcome.table, outcome.state);
  for (const std::string& difference : outcome.differences) std::cout << fmt::format("  {}\n", difference);
}

void PrintJson(const std::vector<Outcome>& outcomes) {
  JsonArrayWriter array(std::cout);
  for (const Outcome& outcome : outcomes) {
    array.Add({{"table", outcome.table}, {"state", outcome.state}, {"differences", outcome.differences}});
  }
  array.End();
}

// Returns whether copies can use all tables.
bool ProvideAll(LocalDatabase& local, const Dialect& dialect, const InitArguments& arguments) {
  const bool asJson = arguments.form == OutputForm::Json;
  std::vector<Outcome> outcomes;
  bool allUsable = true;
  for (const LocalTable& table : LocalTables()) {
    const Outcome& outcome = outcomes.emplace_back(Provide(local, dialect, table));
    const bool usable = outcome.differences.empty();
    if (!asJson && !(arguments.quiet && usable)) PrintLines(outcome);
    allUsable &= usable;
  }
  if (asJson) PrintJson(outcomes);
  return allUsable;
}

void RewriteMidnights(LocalDatabase& local, bool quiet) {
  const auto session = local.OpenSession();
  for (const auto& [table, count] : RewriteOldMidnights(*session)) {
    if (quiet) continue;
    std::cout << fmt::format(
        "{}: {} {} of an older release rewritten, as \"2026-11-05 00:00:00\" instead of \"2026-11-05\"\n", table, count,
        count == 1 ? "midnight" : "midnights");
  }
  session->Close();
}

}  // namespace

AdminStatus Init(const InitArguments& arguments) {
  if (!arguments.printFor.empty()) {
    Print(RequireDialect(arguments.printFor));
    return AdminStatus::Done;
  }
  ConnectionText text(arguments.connection);
  if (arguments.print && IsEmbedded(text)) {
    Print(SqliteDialect());
    return AdminStatus::Done;
  }
  // The tables need a file, so a missing SQLite file is created too.
  if (IsEmbedded(text) && !text.Get("Mode")) text = text.With("Mode", "Create");
  LocalDatabase local({text.Text(), arguments.database}, Purpose::Write);
  Connection& connection = local.Connection();
  const Dialect& dialect = RequireDialect(connection.System());
  if (arguments.print) {
    Print(dialect);
    return AdminStatus::Done;
  }
  const bool allUsable = ProvideAll(local, dialect, arguments);
  connection.Close();
  const bool quiet = arguments.quiet || arguments.form == OutputForm::Json;
  RewriteMidnights(local, quiet);
  if (allUsable) return AdminStatus::Done;
  if (arguments.form == OutputForm::Table)
    std::cout << "Tables that differ were not changed. \"qmxadmin init --print\" shows the expected definitions.\n";
  return AdminStatus::Wrong;
}

}  // namespace qmx
