// All in which the database systems behind ODBC differ, as data.
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
  ByState,       // a server's own SQLSTATE
  ByNativeCode,  // a server's own error code; its driver's codes begin at 2000
  Always,        // no connection lies between
};

struct OdbcDialect {
  std::string_view system;  // the beginning of what the driver calls its database system; "" fits every one

  // Run on every new connection, so that the same text means the same everywhere.
  std::vector<std::string> settings;

  // The server's own statement time-out, with "#" for `timeoutUnit`s of it and `noTimeout` in that place for none.
  // Where there is no such setting the driver's query time-out is used.
  std::string timeoutSetting;
  int timeoutUnitsPerSecond = 1;
  std::string noTimeout;

  // How the current catalog is asked for; the driver is asked where this is empty.
  std::string catalogQuery;

  // Whether the driver can switch the catalog; where it cannot, the connection is made anew.
  bool switchesCatalog = false;

  // A parameter that is an integer, also where a text stands beside it.
  std::string integerParameter = "?";

  // Moments are stored as texts, in the full form.
  bool keepsMomentsAsTexts = false;

  // Gives 1 where narrow texts are UTF-8 in both directions, so that the driver need not convert wide ones; "" where
  // that cannot be known.
  std::string utf8Query;

  // Whether a statement with parameters that was refused may be told as one that went well with a remark.
  bool warningsAreErrors = false;

  // Whether a prepared query is refused once its table has other columns. Where it is not, it shows the new ones under
  // the names of the old ones.
  bool refusesOutdatedQueries = false;

  // The connection text's DATABASE is the path of a file, whose catalog is the file's name without ".db".
  bool catalogIsFile = false;

  // In which schema an unqualified table is looked for; "" where there are no schemas.
  std::string schemaQuery;

  // How the system takes many rows fastest.
  RowForm rowForm = RowForm::InValues;

  // Has a row for each table t of the catalog in which a refused statement leaves some of its rows and which a rollback
  // does not change; "" where there is none such ever.
  std::string nonTransactionalTablesQuery;

  // Without such a sign the answer may be lost and the transaction saved.
  Refusals refusals = Refusals::ByState;

  // Where only the written rows are locked, a group is as large as the time allows.
  GroupLimits grouping;
};

const OdbcDialect& DialectOf(std::string_view system);

}  // namespace qmx
