#include "platform/progress/row_counter.h"

#include "platform/names.h"

namespace qmx {

void RowCounter::RowSaved(std::string_view table) {
  if (SameName(table, table_)) rows_.fetch_add(1, std::memory_order_relaxed);
}

}  // namespace qmx
