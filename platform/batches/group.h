// Statements that are committed together.
//
// A commit costs at least as much as a written row. If anything fails, the group is rolled back and its statements are
// executed again one by one, so the tables end as if each statement had been committed separately. So is what the
// database asks to try again. A group that cannot be rolled back is never executed again, because it may be saved
// already. Every further use of it raises.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/batches/retries.h"
#include "platform/database_driver.h"
#include "platform/steady_clock.h"
#include "platform/transaction_state.h"

namespace qmx {

// Executes a statement with these values; returns how many rows were affected.
std::int64_t Executed(DriverStatement& statement, std::span<const Variant* const> values);

class Group {
 public:
  Group(DriverSession& inner, SteadyClock& clock, Retries& retries)  // borrowed
      : inner_(inner), clock_(clock), retries_(retries) {}

  void Allow(bool may) { isAllowed_ = may; }  // to Write, from now on
  bool IsOpen() const { return state_.IsOpen(); }
  bool KnowsLimits() const { return limits_.has_value(); }
  bool MayOpen();  // allowed, outside the program's own transactions, and possible in the database as it is
  SteadyClock::TimePoint Due() const { return due_; }

  // Executes a statement with these values, in the group if allowed, else after it. Returns the number of affected
  // rows. Opens the group if it is not open.
  std::int64_t Write(DriverStatement& statement, const std::string& text, std::span<const Variant* const> values);

  void Commit();  // if it is open; it is not open afterwards, even when this raises
  void Redo();    // likewise, in a handler: rolls it back, and executes its statements again one by one

  // The program's own transactions.
  void BeginOwn();
  void CommitOwn();  // does nothing while the group commits what is written
  void RollbackOwn();
  bool IsWithinOwn() const { return isWithinOwn_; }

 private:
  struct Written {
    std::string text;
    std::vector<Variant> values;
  };

  const GroupLimits& Limits();
  std::int64_t Run(DriverStatement& statement, const std::string& text, std::span<const Variant* const> values);
  void Open();
  void RollBack();
  void ExecuteAgain(const Written& written);
  void Keep(const std::string& text, std::span<const Variant* const> values);

  DriverSession& inner_;
  SteadyClock& clock_;
  Retries& retries_;
  bool isAllowed_ = false;
  bool isWithinOwn_ = false;           // in a transaction that the program began, so the program commits
  std::optional<GroupLimits> limits_;  // the session is asked once
  TransactionState state_;
  SteadyClock::TimePoint due_;
  std::vector<Written> written_;  // their memory is used again
  std::size_t count_ = 0;
};

}  // namespace qmx
