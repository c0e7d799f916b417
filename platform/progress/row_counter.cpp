#include "platform/progress/row_counter.h"

#include "platform/names.h"

namespace qmx {

void RowCounter::RowSaved(std::string_view table) {
  if (SameName(table, table_)) rows_.fetch_add(1, std::memory_order_relaxed);
}

void RowCounter::Executing(std::string_view statement) {
  isDeleting_ = SameName(statement.substr(0, deletion_.size()), deletion_);
}

void RowCounter::Executed(std::string_view, std::int64_t, const Error*) { isDeleting_ = false; }

}  // namespace qmx
