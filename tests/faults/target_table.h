// The local table and its control record: made anew before each run, and looked at after it.
#pragma once

#include <memory>
#include <string>

#include "tests/faults/judge.h"
#include "tests/faults/table_states.h"

namespace qmx::test::faults {

inline constexpr const char* kOldTime = "2001-02-03 04:05:06";

class TargetTable {
 public:
  virtual ~TargetTable() = default;

  virtual std::string ConnectionText() const = 0;
  virtual std::string Password() const = 0;  // in the connection text; "" for none

  virtual void BeginAnew(Method method) = 0;  // with the old rows, released
  virtual void Release() = 0;
  virtual void LookAt(Left& left) = 0;  // rows, flag, time, integrity
};

// An SQLite file in that folder.
std::unique_ptr<TargetTable> TableInAFile(const std::string& folder, const Rows& old);

}  // namespace qmx::test::faults
