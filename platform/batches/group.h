// Statements that are committed together.
//
// A commit costs as much as a written row or more. Where anything fails, the group is taken back and done again one by
// one, so that the tables end as if every statement had been committed by itself. A group that cannot be taken back is
// never done again: it may be saved already. Every further use of it raises.
#pragma once

#include <chrono>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/database_driver.h"
#include "platform/transaction_state.h"

namespace qmx {

// Executes a statement with these values; returns how many rows were affected.
std::int64_t Executed(DriverStatement& statement, std::span<const Variant* const> values);

class Group {
 public:
  using Clock = std::chrono::steady_clock;

  explicit Group(DriverSession& inner) : inner_(inner) {}  // borrowed

  bool IsPossible();  // in the database as it is
  bool IsOpen() const { return state_.IsOpen(); }
  Clock::time_point Due() const { return due_; }

  // The same in the group; opens it where it is not.
  std::int64_t Run(DriverStatement& statement, const std::string& text, std::span<const Variant* const> values);

  void Commit();         // where it is open; it is not open afterwards, whatever this raises
  void Redo();           // likewise: takes it back, and does it again one by one
  void Lose() noexcept;  // a rollback failed: the error is being handled

 private:
  struct Written {
    std::string text;
    std::vector<Variant> values;
  };

  void Open();
  void Keep(const std::string& text, std::span<const Variant* const> values);

  DriverSession& inner_;
  std::optional<GroupLimits> limits_;  // asked for once
  TransactionState state_;
  Clock::time_point due_;
  std::vector<Written> written_;  // their memory is used again
  std::size_t count_ = 0;
};

}  // namespace qmx
