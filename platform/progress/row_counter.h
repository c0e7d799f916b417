// Counts the rows of one table that record sets save, added ones and changed ones, and knows when rows are being
// deleted.
//
// A changed row counts also when no value of it differed.
#pragma once

#include <atomic>
#include <string>

#include "platform/database_observer.h"

namespace qmx {

class RowCounter : public DatabaseObserver {
 public:
  RowCounter(std::string table, std::atomic<std::int64_t>& rows)  // borrowed
      : table_(std::move(table)), deletion_("delete from " + table_ + " "), rows_(rows) {}

  void RowSaved(std::string_view table) override;
  void Executing(std::string_view statement) override;
  void Executed(std::string_view statement, std::int64_t affected, const Error* error) override;

  // Returns whether a statement is running that deletes rows of the table. May be called from another thread.
  bool IsDeleting() const { return isDeleting_.load(std::memory_order_relaxed); }

 private:
  std::string table_;
  std::string deletion_;  // with which such a statement begins
  std::atomic<std::int64_t>& rows_;
  std::atomic<bool> isDeleting_ = false;
};

}  // namespace qmx
