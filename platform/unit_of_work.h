// The transaction of Connection::Atomically: all that is written in it is committed at its end, or nothing.
//
// A failed call on the connection or on one of its record sets makes the end roll back, also if the caller handles the
// error: rows that follow a lost one must not be saved without it. Until then no further statement is executed, because
// some systems end the transaction at a failure, and would save the statement by itself.
#pragma once

#include <functional>
#include <optional>

#include "platform/database_driver.h"
#include "platform/error.h"

namespace qmx {

class UnitOfWork {
 public:
  explicit UnitOfWork(DriverSession& session) : session_(session) {}  // borrowed

  bool IsOpen() const { return isOpen_; }

  // Raises what the work raises, else the first failure within it, else why the database did not commit. In each case
  // nothing is saved, unless the answer to the commit was lost: the error then says that it is not known.
  void Run(const std::function<void()>& work);

  void RequireNoFailure() const {  // raises it
    if (isOpen_ && hasFailed_) RaiseFailure();
  }
  void Abandon() noexcept;                   // rolls back what is open, before the connection is closed
  void Fail(const Error& failure) noexcept;  // the failure of a call; does nothing if no unit is open

 private:
  void RaiseFailure() const;
  void Commit();
  bool RollBack() noexcept;  // returns whether nothing is saved

  DriverSession& session_;
  bool isOpen_ = false;
  bool hasFailed_ = false;
  std::optional<Error> failure_;  // the first one; empty if there was no memory for it
};

}  // namespace qmx
