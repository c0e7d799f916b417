// The columns of a row, in order. Each layout has a number, so that a Column that was looked up once is found again
// without comparing names.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/database_driver.h"

namespace qmx {

// A row's values. In rows to be written, Empty marks a column that was not assigned.
using Row = std::vector<Variant>;

class RowLayout {
 public:
  explicit RowLayout(std::vector<ColumnDescription> columns);

  std::uint64_t Number() const { return number_; }  // never reused within the process
  const std::vector<ColumnDescription>& Columns() const { return columns_; }
  std::optional<std::size_t> Find(std::string_view name) const;

  // Whether a query's columns are these, under the same names in the same order.
  bool HasNamesOf(const std::vector<ColumnDescription>& columns) const;

 private:
  std::uint64_t number_;
  std::vector<ColumnDescription> columns_;
};

}  // namespace qmx
