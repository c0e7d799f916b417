// One execution of a statement that is used again. Resets the statement at the end, also after an exception.
#pragma once

#include "platform/database_driver.h"

namespace qmx {

class Execution {
 public:
  explicit Execution(DriverStatement& statement) : statement_(statement) {}
  ~Execution() { statement_.Reset(); }
  Execution(const Execution&) = delete;
  Execution& operator=(const Execution&) = delete;

  // Runs the statement to its end and returns how many rows it affected.
  std::int64_t Run() {
    while (statement_.Step()) continue;
    return statement_.RowsAffected();
  }

 private:
  DriverStatement& statement_;
};

}  // namespace qmx
