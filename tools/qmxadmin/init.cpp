// qmxadmin init: makes the local tables that are missing and leaves alone those that are there.

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "platform/database.h"
#include "platform/error.h"
#include "platform/names.h"
#include "platform/odbc/driver.h"
#include "platform/sqlite/driver.h"
#include "schema/dialect.h"
#include "tools/qmxadmin/commands.h"
#include "tools/qmxadmin/differences.h"

namespace qmx {
namespace {

struct Options {
  std::string connection;
  std::string database;
  bool print = false;
};

const Dialect& RequireDialect(const std::string& system) {
  if (const Dialect* dialect = DialectOfSystem(system)) return *dialect;
  throw Error(errors::kInvalidCall, "qmxadmin",
              "The tables can be made in SQLite, PostgreSQL and MariaDB, not in \"" + system + "\".");
}

bool IsEmbedded(const ConnectionText& text) { return SameName(text.Get("Provider").value_or(""), "SQLite"); }

void Print(const Dialect& dialect) {
  for (const LocalTable& table : LocalTables()) {
    std::cout << dialect.CreateTable(table) << ";\n";
    for (const std::string& index : dialect.CreateIndexes(table)) std::cout << index << ";\n";
  }
}

bool IsThere(Connection& connection, const LocalTable& table, TableDescription& description) {
  try {
    description = connection.Describe(table.name);
    return true;
  } catch (const Error& error) {
    if (error.Number() != errors::kNoSuchTable) throw;
    return false;
  }
}

// Makes the table or says how it differs; whether it is now as it should be.
bool Provide(Connection& connection, const Dialect& dialect, const LocalTable& table) {
  TableDescription description;
  const bool wasThere = IsThere(connection, table, description);
  if (!wasThere) connection.Execute(dialect.CreateTable(table));
  const std::vector<std::string> differences = wasThere ? Differences(table, description) : std::vector<std::string>();
  if (differences.empty()) {
    for (const std::string& index : dialect.CreateIndexes(table)) connection.Execute(index);
  }
  std::cout << table.name << (!wasThere ? ": made\n" : differences.empty() ? ": there already\n" : ": differs\n");
  for (const std::string& difference : differences) std::cout << "  " << difference << '\n';
  return differences.empty();
}

AdminStatus Init(const Options& options) {
  ConnectionText text(options.connection);
  if (options.print && IsEmbedded(text)) {
    Print(SqliteDialect());
    return AdminStatus::Done;
  }
  // Whoever asks for tables wants the file that they are in.
  if (IsEmbedded(text) && !text.Get("Mode")) text = text.With("Mode", "Create");
  SqliteDriver sqlite;
  OdbcDriver odbc;
  Connection connection({&sqlite, &odbc}, nullptr);
  connection.Open(text.Text(), "", "");
  const Dialect& dialect = RequireDialect(connection.System());
  if (options.print) {
    Print(dialect);
    return AdminStatus::Done;
  }
  if (options.database.find_first_not_of(' ') != std::string::npos) connection.defaultdatabase(options.database);
  bool asItShouldBe = true;
  for (const LocalTable& table : LocalTables()) asItShouldBe &= Provide(connection, dialect, table);
  connection.Close();
  if (asItShouldBe) return AdminStatus::Done;
  std::cout << "Tables that differ were left as they are. \"qmxadmin init --print\" shows how they should be.\n";
  return AdminStatus::Differs;
}

}  // namespace

void AddInit(CLI::App& program, AdminStatus& status) {
  CLI::App* init = program.add_subcommand("init", "Make the local tables that are missing; leave alone what is there");
  const auto options = std::make_shared<Options>();
  init->add_option("CONNECTION", options->connection,
                   "Connection text of the local database, such as \"Provider=SQLite;Data Source=FILE\"; a missing "
                   "file is made")
      ->required();
  init->add_option("DATABASE", options->database, "Default database; \"\" for the connection's own")->required();
  init->add_flag("--print", options->print,
                 "Show the statements and make nothing; a server is asked which system it is");
  init->callback([options, &status] { status = Init(*options); });
}

}  // namespace qmx
