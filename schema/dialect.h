// The statements that make a local table, in the words of one database system.
//
// Names are not quoted: the system's own statements do not quote them either, so that both mean the same name whatever
// a database makes of its case.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "schema/local_tables.h"

namespace qmx {

struct Dialect {
  const char* dateTimeType;  // of whole seconds without a zone; the other types have one name everywhere
  const char* tableOptions;  // behind the columns
  const char* anyCase;       // behind the type of a column that takes capitals for small letters
  const char* makesAnyCase;  // makes what `anyCase` names; "" where the system has it

  // With columns that compare letter by letter, which every server makes.
  std::string CreateTable(const LocalTable& table) const;

  // The statements that make the table with table codes that compare without regard to case. A server may refuse them.
  // None for a table without such a column.
  std::vector<std::string> CreateTableOfAnyCase(const LocalTable& table) const;

  std::vector<std::string> CreateIndexes(const LocalTable& table) const;  // each may be run where the index exists

 private:
  std::string CreateTable(const LocalTable& table, const char* ofTableCodes) const;
};

const Dialect& SqliteDialect();

// By what the system calls itself; null for one whose tables cannot be made from here.
const Dialect* DialectOfSystem(std::string_view system);

}  // namespace qmx
