// Compares a local table with what the ERP lists, row by row.
//
// Local rows are read in the order of their keys, a fixed number at a time. For each of them the ERP's row of the same
// key is looked up. ERP rows that were never looked up are missing in the local table. The comparison relies on no
// particular order of texts, so the two tables may be in different database systems. Values are compared in their
// column's type: dates as dates, numbers exactly, texts byte by byte.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/database_driver.h"
#include "platform/datetime.h"
#include "schema/local_tables.h"

namespace qmx {

using RowValues = std::vector<Variant>;  // one value per column of the table, in its order

// Receives each difference found.
class DifferenceSink {
 public:
  virtual ~DifferenceSink() = default;
  virtual void Missing(const RowValues& erp) = 0;
  virtual void Surplus(const RowValues& local) = 0;
  virtual void Different(const RowValues& local, const RowValues& erp, const std::vector<std::size_t>& columns) = 0;
  virtual void Repeated(const RowValues& erp, std::int64_t times) = 0;  // the ERP lists the key several times
};

struct ComparedRows {
  std::int64_t local = 0;
  std::int64_t erp = 0;
  std::int64_t older = 0;  // local rows that start before the period that the ERP was asked for
};

// Reports the differences to `differences` and returns the counts. Local rows that start before `firstStartDate` are
// not surplus.
ComparedRows Compare(const LocalTable& table, DriverSession& local, DriverSession& erp,
                     std::optional<DateTime> firstStartDate, DifferenceSink& differences);

// Raises 5 if the local table lacks a column or has another key.
void RequireComparable(const LocalTable& table, const TableDescription& found);

}  // namespace qmx
