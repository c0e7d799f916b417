#include "platform/row_layout.h"

#include <algorithm>
#include <atomic>

#include "platform/names.h"

namespace qmx {

RowLayout::RowLayout(std::vector<ColumnDescription> columns) : columns_(std::move(columns)) {
  static std::atomic<std::uint64_t> last{0};
  number_ = ++last;
}

std::optional<std::size_t> RowLayout::Find(std::string_view name) const {
  const auto found = std::find_if(columns_.begin(), columns_.end(),
                                  [&](const ColumnDescription& column) { return SameName(column.name, name); });
  if (found == columns_.end()) return std::nullopt;
  return static_cast<std::size_t>(found - columns_.begin());
}

bool RowLayout::HasNamesOf(const std::vector<ColumnDescription>& columns) const {
  return std::equal(columns_.begin(), columns_.end(), columns.begin(), columns.end(),
                    [](const ColumnDescription& one, const ColumnDescription& other) {
                      return one.name == other.name || SameName(one.name, other.name);
                    });
}

}  // namespace qmx
