// Counts the rows of one table that record sets save: added ones and changed ones.
//
// A changed row counts also when no value of it differed.
#pragma once

#include <atomic>
#include <string>

#include "platform/database_observer.h"

namespace qmx {

class RowCounter : public DatabaseObserver {
 public:
  RowCounter(std::string table, std::atomic<std::int64_t>& rows) : table_(std::move(table)), rows_(rows) {}  // borrowed

  void RowSaved(std::string_view table) override;

 private:
  std::string table_;
  std::atomic<std::int64_t>& rows_;
};

}  // namespace qmx
