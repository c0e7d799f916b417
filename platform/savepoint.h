// A point within an open transaction to which it can be rolled back, for whoever tries a statement that may be refused
// and then does the same in another way. Some systems refuse every further statement of the transaction otherwise.
//
// All its statements are prepared at the beginning: PostgreSQL's driver names a prepared statement by its address, and
// cannot free the name of an earlier one while the transaction is refused.
//
// One at a time. It belongs to the thread that uses the session.
#pragma once

#include <memory>

#include "platform/database_driver.h"

namespace qmx {

class Savepoint {
 public:
  explicit Savepoint(DriverSession& session);  // borrowed

  void Release();            // what was written since then stays in the transaction
  bool RollBack() noexcept;  // takes it back; returns false if that failed, as when the database ended the transaction

 private:
  std::unique_ptr<DriverStatement> release_;
  std::unique_ptr<DriverStatement> rollBack_;
};

}  // namespace qmx
