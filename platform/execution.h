// One execution of a statement that is used again: what it borrowed is given back at the end, however that comes.
#pragma once

#include "platform/database_driver.h"

namespace qmx {

class Execution {
 public:
  explicit Execution(DriverStatement& statement) : statement_(statement) {}
  ~Execution() { statement_.Reset(); }
  Execution(const Execution&) = delete;
  Execution& operator=(const Execution&) = delete;

  // To its end; returns how many rows it affected.
  std::int64_t Run() {
    while (statement_.Step()) continue;
    return statement_.RowsAffected();
  }

 private:
  DriverStatement& statement_;
};

}  // namespace qmx
