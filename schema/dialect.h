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

class Dialect {
 public:
  virtual ~Dialect() = default;

  std::string CreateTable(const LocalTable& table) const;
  std::vector<std::string> CreateIndexes(const LocalTable& table) const;  // each may be run where the index exists

 protected:
  virtual std::string Type(const LocalColumn& column) const = 0;
  virtual std::string TableOptions() const { return ""; }  // behind the columns
};

const Dialect& SqliteDialect();
const Dialect& PostgresqlDialect();
const Dialect& MariadbDialect();

// By what the system calls itself; null for one whose tables cannot be made from here.
const Dialect* DialectOfSystem(std::string_view system);

}  // namespace qmx
