// The statements that create a local table, for one database system.
//
// Names are not quoted. The copy's statements do not quote them either, so both mean the same name however a database
// changes its case.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "schema/local_tables.h"

namespace qmx {

struct Dialect {
  const char* dateTimeType;  // whole seconds without a zone; other types have the same name everywhere
  const char* tableOptions;  // after the columns
  const char* anyCase;       // after the type of a column that ignores case
  const char* makesAnyCase;  // creates the collation of `anyCase`; "" if the system has it
  const char* countsIndex;   // counts the indexes of a name, which replaces "#"

  // With columns that compare letter by letter, which every server supports.
  std::string CreateTable(const LocalTable& table) const;

  // Returns the statements that create the table with table codes that compare without regard to case. A server may
  // refuse them. None for a table without such a column.
  std::vector<std::string> CreateTableOfAnyCase(const LocalTable& table) const;

  std::vector<std::string> CreateIndexes(const LocalTable& table) const;  // each may run when the index exists

  // Returns a query for the number of the table's indexes that exist, or "" for a table without one. Whoever may read
  // the table may run it, while "create index if not exists" needs the right to create even if the index exists.
  std::string CountIndexes(const LocalTable& table) const;

 private:
  std::string CreateTable(const LocalTable& table, const char* ofTableCodes) const;
};

const Dialect& SqliteDialect();

// Finds a system by its own name; null for one whose tables cannot be created here.
const Dialect* DialectOfSystem(std::string_view system);

}  // namespace qmx
