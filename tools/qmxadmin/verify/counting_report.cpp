#include "tools/qmxadmin/verify/counting_report.h"

#include <algorithm>

namespace qmx {

void CountingReport::Begin(const LocalTable& table) {
  table_ = &table;
  key_.clear();
  for (std::size_t column = 0; column < table.columns.size(); ++column) {
    if (std::find(table.key.begin(), table.key.end(), table.columns[column].name) != table.key.end())
      key_.push_back(column);
  }
  counts_.fill(0);
}

bool CountingReport::End(const ComparedRows& rows) {
  WriteSummary(rows);
  return std::all_of(counts_.begin(), counts_.end(), [](std::int64_t count) { return count == 0; });
}

void CountingReport::Missing(const RowValues& erp) { Add({.kind = kMissing, .erp = &erp}); }

void CountingReport::Surplus(const RowValues& local) { Add({.kind = kSurplus, .local = &local}); }

void CountingReport::Different(const RowValues& local, const RowValues& erp, const std::vector<std::size_t>& columns) {
  Add({.kind = kDifferent, .local = &local, .erp = &erp, .columns = columns});
}

void CountingReport::Repeated(const RowValues& erp, std::int64_t times) {
  Add({.kind = kRepeated, .erp = &erp, .times = times});
}

void CountingReport::Add(const Difference& difference) {
  ++counts_[difference.kind];
  Write(difference);
}

}  // namespace qmx
