// The differences of the database systems behind ODBC, as data.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/database_driver.h"

namespace qmx {

enum class RowForm {
  InValues,  // many rows after "values"
  ByUnnest,  // an array for each column, taken apart by the server
  ByArrays,  // an array for each parameter
};

// How an error of a commit shows that the database refused it and saved nothing.
enum class Refusals {
  ByState,                 // a server's own SQLSTATE
  ByNativeCode,            // a server's own error code; its driver's codes begin at 2000
  ByNativeCodeInACluster,  // the same, but other nodes may have what this one could not finish
  Always,                  // there is no connection that can be lost
};

struct OdbcDialect {
  std::string_view system;  // the beginning of the name that the driver reports; "" matches every system

  // Statements for every new connection, so that the same text means the same everywhere.
  std::vector<std::string> settings;

  // The statement that sets the server's own time-out. "#" stands for the time-out, with `timeoutUnitsPerSecond`, or
  // for `noTimeout`. Without such a statement the driver's query time-out is used.
  std::string timeoutSetting;
  int timeoutUnitsPerSecond = 1;
  std::string noTimeout;

  // Returns the current catalog; if empty, the driver is asked.
  std::string catalogQuery;

  // Whether the driver can switch the catalog. If it cannot, a new connection is made.
  bool switchesCatalog = false;

  // A parameter that is always an integer, also beside a text.
  std::string integerParameter = "?";

  // Moments are stored as texts, in the full form.
  bool keepsMomentsAsTexts = false;

  // Returns 1 if narrow texts are UTF-8 in both directions, so that the driver need not convert wide ones; "" if that
  // cannot be found out.
  std::string utf8Query;

  // Whether the driver may report a refused statement with parameters as a success with a warning.
  bool warningsAreErrors = false;

  // Whether a prepared query is refused after its table's columns have changed. If not, it returns the new columns
  // under the names of the old ones.
  bool refusesOutdatedQueries = false;

  // The connection text's DATABASE is the path of a file, whose catalog is the file's name without ".db".
  bool catalogIsFile = false;

  // Returns the schema of unqualified tables; "" if there are no schemas.
  std::string schemaQuery;

  // The fastest form for many rows.
  RowForm rowForm = RowForm::InValues;

  // Returns a row for each table t of the catalog without transactions: a refused statement leaves some of its rows,
  // and a rollback changes nothing. "" if there are no such tables.
  std::string nonTransactionalTablesQuery;

  // The keyword and value of a connection text with which the driver leaves transactions to the program after a refused
  // statement. If empty, it always does.
  std::string savepointKeyword;
  std::string savepointValue;

  // Lists the setting that is ON where the server is a node of a cluster, whose reads may be older than what was
  // committed on another node. The second statement makes reads wait for that, for 1 in place of "#", or not, for 0.
  // "" if there are no such clusters.
  std::string clusterQuery;
  std::string causalReadsSetting;

  // Any other error may mean that the answer was lost and the transaction is saved.
  Refusals refusals = Refusals::ByState;
  Refusals refusalsInACluster = Refusals::ByState;

  // If only the written rows are locked, a group is as large as the time allows.
  GroupLimits grouping;
};

const OdbcDialect& DialectOf(std::string_view system);

}  // namespace qmx
