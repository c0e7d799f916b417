// Any number of database observers, which are notified in order. Without observers calls cost nothing more.
#pragma once

#include <algorithm>
#include <vector>

#include "platform/database_observer.h"

namespace qmx {

class DatabaseObservers {
 public:
  DatabaseObservers(DatabaseObserver* only = nullptr) {  // all are borrowed; null is none
    if (only) all_.push_back(only);
  }
  explicit DatabaseObservers(std::vector<DatabaseObserver*> all) : all_(std::move(all)) {}

  bool IsEmpty() const { return all_.empty(); }

  template <typename Tell>
  void ForEach(Tell&& tell) const {
    for (DatabaseObserver* const observer : all_) tell(*observer);
  }

  int NextRecordset() const {
    int number = 0;
    ForEach([&](DatabaseObserver& observer) {
      const int own = observer.NextRecordset();
      if (number == 0) number = own;
    });
    return number;
  }
  bool HearOfStatements() const {
    return std::any_of(all_.begin(), all_.end(), [](const auto* observer) { return observer->HearsOfStatements(); });
  }
  bool HearOfColumns() const {
    return std::any_of(all_.begin(), all_.end(), [](DatabaseObserver* observer) { return observer->HearsOfColumns(); });
  }

 private:
  std::vector<DatabaseObserver*> all_;
};

}  // namespace qmx
