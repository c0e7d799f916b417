#include "platform/odbc/session.h"

#include <sqlext.h>

#include <filesystem>

#include "platform/error.h"
#include "platform/odbc/array_rows.h"
#include "platform/odbc/catalog.h"
#include "platform/odbc/connection_string.h"
#include "platform/odbc/statement.h"
#include "platform/odbc/unnest_rows.h"
#include "platform/sql_statement.h"

namespace qmx {
namespace {

namespace fs = std::filesystem;

constexpr const char* kDatabase = "Database";

fs::path FileOf(const std::string& text) { return OdbcKeyword(text, kDatabase); }

}  // namespace

OdbcDriverSession::OdbcDriverSession(std::string text, Watchdog& watchdog)
    : watchdog_(watchdog), text_(std::move(text)), connection_(std::make_unique<OdbcConnection>(text_, watchdog)) {}

std::unique_ptr<DriverStatement> OdbcDriverSession::Prepare(const std::string& statement) {
  // One driver takes anything after a ";" for a second statement.
  return std::make_unique<OdbcDriverStatement>(Known(), std::string(StatementAlone(statement)));
}

std::unique_ptr<DriverRows> OdbcDriverSession::PrepareRows(const RowInsert& insert) {
  if (KeepsParts(insert.table)) return RowsInValues(*this, insert, 1);
  std::unique_ptr<DriverRows> inValues = RowsInValues(*this, insert);
  switch (connection_->Dialect().rowForm) {
    case RowForm::ByUnnest:
      return RowsByUnnest(*connection_, insert, std::move(inValues));
    case RowForm::ByArrays:
      return RowsByArrays(*connection_, insert, std::move(inValues));
    case RowForm::InValues:
      break;
  }
  return inValues;
}

bool OdbcDriverSession::KeepsParts(const std::string& table) {
  const std::string& text = connection_->Dialect().nonTransactionalTablesQuery;
  if (text.empty()) return false;
  const Variant name(table);
  OdbcDriverStatement query(Known(), table.empty() ? text : text + " and t.table_name = ?");
  if (!table.empty()) query.Bind(0, name);
  return query.Step();
}

TableDescription OdbcDriverSession::Describe(const std::string& table) { return DescribeTable(Known(), table); }

std::string OdbcDriverSession::QuoteIdentifier(const std::string& name) const { return QuotedName(*connection_, name); }

std::string OdbcDriverSession::Catalog() {
  const OdbcDialect& dialect = Known().Dialect();
  if (dialect.catalogIsFile) return FileOf(text_).stem().string();
  if (!dialect.catalogQuery.empty()) return connection_->AskText(dialect.catalogQuery);
  return connection_->Attribute(SQL_ATTR_CURRENT_CATALOG);
}

void OdbcDriverSession::SelectCatalog(const std::string& name) {
  if (name == Catalog()) return;
  connection_->Transaction().RequireNone("The default database cannot be changed");
  if (connection_->Dialect().switchesCatalog) {
    connection_->Attribute(SQL_ATTR_CURRENT_CATALOG, name);
  } else {
    ConnectTo(name);
  }
  // Some drivers report success without a change.
  if (const std::string selected = Catalog(); selected != name) {
    throw Error(
        errors::kProviderUnspecified, "ODBC",
        "The default database cannot be \"" + name + "\": the driver accepts it and stays with \"" + selected + "\".");
  }
}

void OdbcDriverSession::ConnectTo(const std::string& catalog) {
  std::string database = catalog;
  if (connection_->Dialect().catalogIsFile) {
    const fs::path file = FileOf(text_).replace_filename(catalog + ".db");
    std::error_code ignored;
    if (!fs::is_regular_file(file, ignored)) {  // the driver would create it
      throw Error(errors::kProviderUnspecified, "ODBC",
                  "The default database cannot be \"" + catalog + "\": there is no file " + file.string() + ".")
          .With("file", file.string());
    }
    database = file.string();
  }
  try {
    Reconnect(WithOdbcKeyword(text_, kDatabase, database));
  } catch (const Error& cause) {
    throw Error(cause.Number(), cause.Source(),
                "The default database cannot be \"" + catalog + "\": " + cause.Description());
  }
}

void OdbcDriverSession::Reconnect(std::string text) {
  auto connection = std::make_unique<OdbcConnection>(text, watchdog_);
  connection->Timeout(timeout_);
  connection_ = std::move(connection);
  text_ = std::move(text);
}

void OdbcDriverSession::EnableSavepoints() {
  const OdbcDialect& dialect = Known().Dialect();
  if (dialect.savepointKeyword.empty()) return;
  if (OdbcKeyword(text_, dialect.savepointKeyword) == dialect.savepointValue) return;
  connection_->Transaction().RequireNone("Savepoints cannot be enabled");
  Reconnect(WithOdbcKeyword(text_, dialect.savepointKeyword, dialect.savepointValue));
}

void OdbcDriverSession::Timeout(std::chrono::seconds limit) {
  Known().Timeout(limit);
  timeout_ = limit;
}

void OdbcDriverSession::Begin() { connection_->Begin(); }

void OdbcDriverSession::Rollback() { connection_->Rollback(); }

// Outside a transaction every row is committed as it is written.
void OdbcDriverSession::Commit() { connection_->Commit(); }

GroupLimits OdbcDriverSession::Grouping() { return KeepsParts("") ? GroupLimits() : connection_->Dialect().grouping; }

void OdbcDriverSession::Close() {
  const TransactionState left = connection_->Transaction();
  connection_.reset();
  left.RequireNone("The connection was closed, and rows were lost,");
}

OdbcConnection& OdbcDriverSession::Known() {
  connection_->Transaction().RequireKnown();
  return *connection_;
}

}  // namespace qmx
