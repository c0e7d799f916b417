// A point within an open transaction to which it can be rolled back, for whoever tries a statement that may be refused
// and then does the same in another way. Some systems refuse every further statement of the transaction otherwise.
//
// One at a time. It belongs to the thread that uses the session.
#pragma once

#include "platform/database_driver.h"

namespace qmx {

class Savepoint {
 public:
  explicit Savepoint(DriverSession& session);  // borrowed

  void Release();            // what was written since then stays in the transaction
  bool RollBack() noexcept;  // takes it back; returns false if that failed, as when the database ended the transaction

 private:
  void Run(const char* statement);
  DriverSession& session_;
};

}  // namespace qmx
