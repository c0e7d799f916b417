#include "tools/qmxadmin/init.h"

#include <iostream>
#include <string>

#include "platform/connection_text.h"
#include "platform/database.h"
#include "platform/error.h"
#include "platform/names.h"
#include "schema/dialect.h"
#include "tools/qmxadmin/differences.h"
#include "tools/qmxadmin/find_table.h"
#include "tools/qmxadmin/local_database.h"
#include "tools/qmxadmin/old_midnights.h"

namespace qmx {
namespace {

const Dialect& RequireDialect(const std::string& system) {
  if (const Dialect* dialect = DialectOfSystem(system)) return *dialect;
  throw Error(errors::kInvalidCall, "qmxadmin",
              "The tables can be made in SQLite, PostgreSQL and MariaDB, not in \"" + system + "\".");
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

// A server may lack the collation for table codes of any case, or the user the right to make it. Then a plain column
// serves, as "check" reports.
void Make(Connection& connection, const Dialect& dialect, const LocalTable& table) {
  const std::vector<std::string> ofAnyCase = dialect.CreateTableOfAnyCase(table);
  try {
    for (const std::string& statement : ofAnyCase) connection.Execute(statement);
    if (!ofAnyCase.empty()) return;
  } catch (const Error&) {
  }
  connection.Execute(dialect.CreateTable(table));
}

// Makes the table or says how it differs; whether it is now as it should be.
bool Provide(Connection& connection, const Dialect& dialect, const LocalTable& table) {
  const std::optional<TableDescription> found = FindTable(connection, table.name);
  if (!found) Make(connection, dialect, table);
  const std::vector<std::string> differences = found ? Differences(table, *found) : std::vector<std::string>();
  if (differences.empty()) {
    for (const std::string& index : dialect.CreateIndexes(table)) connection.Execute(index);
  }
  std::cout << table.name << (!found ? ": made\n" : differences.empty() ? ": there already\n" : ": differs\n");
  for (const std::string& difference : differences) std::cout << "  " << difference << '\n';
  return differences.empty();
}

void PrintRewritten(const ConnectionText& text, const std::string& database) {
  SqliteDriver sqlite;
  OdbcDriver odbc;
  const auto session = OpenSession({&sqlite, &odbc}, {text.Text(), database});
  for (const auto& [table, count] : RewriteOldMidnights(*session)) {
    std::cout << table << ": " << count << (count == 1 ? " midnight" : " midnights")
              << " of an older release rewritten, as \"2026-11-05 00:00:00\" instead of \"2026-11-05\"\n";
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
  // Whoever asks for tables wants the file that they are in.
  if (IsEmbedded(text) && !text.Get("Mode")) text = text.With("Mode", "Create");
  LocalDatabase local({text.Text(), arguments.database});
  Connection& connection = local.Connection();
  const Dialect& dialect = RequireDialect(connection.System());
  if (arguments.print) {
    Print(dialect);
    return AdminStatus::Done;
  }
  bool asItShouldBe = true;
  for (const LocalTable& table : LocalTables()) asItShouldBe &= Provide(connection, dialect, table);
  connection.Close();
  PrintRewritten(text, arguments.database);
  if (asItShouldBe) return AdminStatus::Done;
  std::cout << "Tables that differ were left as they are. \"qmxadmin init --print\" shows how they should be.\n";
  return AdminStatus::Wrong;
}

}  // namespace qmx
