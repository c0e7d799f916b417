// Compares a local table with what the ERP lists, row by row.
//
// Local rows are read in the order of their keys, so many at a time; the ERP's row of the same key is looked up, and
// what nobody asked for in the end is missing here. No order of texts is assumed, so that both may stand in different
// database systems. Values are compared in their column's type: dates as dates, numbers to the last bit, texts unit by
// unit.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/database_driver.h"
#include "platform/datetime.h"
#include "schema/local_tables.h"

namespace qmx {

using RowValues = std::vector<Variant>;  // of every column of the table, in its order

// Told of every difference.
class DifferenceSink {
 public:
  virtual ~DifferenceSink() = default;
  virtual void Missing(const RowValues& erp) = 0;
  virtual void Surplus(const RowValues& local) = 0;
  virtual void Different(const RowValues& local, const RowValues& erp, const std::vector<std::size_t>& columns) = 0;
  virtual void Repeated(const RowValues& erp, std::int64_t times) = 0;  // the ERP lists a key several times
};

struct ComparedRows {
  std::int64_t local = 0;
  std::int64_t erp = 0;
  std::int64_t older = 0;  // local rows that start before the first start date that the ERP was asked for
};

// What is told of the rows: those that start before `firstStartDate` are not surplus.
ComparedRows Compare(const LocalTable& table, DriverSession& local, DriverSession& erp,
                     std::optional<DateTime> firstStartDate, DifferenceSink& differing);

// Raises 5 where the local table lacks a column or has another key.
void RequireComparable(const LocalTable& table, const TableDescription& found);

}  // namespace qmx
