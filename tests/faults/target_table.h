// The local table and its control record: made anew before each run, and looked at after it.
#pragma once

#include <memory>
#include <string>

#include "platform/database.h"
#include "tests/faults/judge.h"
#include "tests/faults/table_states.h"

namespace qmx::test::faults {

inline constexpr const char* kOldTime = "2001-02-03 04:05:06";

// What a server does to the program's sessions.
enum class Harm { End, Kill, Stop };

class TargetTable {
 public:
  virtual ~TargetTable() = default;

  virtual std::string ConnectionText() const = 0;
  virtual std::string Database() const = 0;  // as the command line names it
  virtual std::string Password() const = 0;  // a piece of it, in the connection text; "" for none

  virtual void BeginAnew(Method method) = 0;  // with the old rows, released
  virtual void Release() = 0;
  virtual void LookAt(Left& left) = 0;  // rows, flag, time, integrity

  virtual void Do(Harm) {}
  virtual void EndSessions() {}  // of the program, which is gone; the server itself goes on

 protected:
  static void Fill(Connection& connection, const Rows& old);
  static std::string ControlRecord(Method method);
  static void LookAtRows(Connection& connection, Left& left);
};

// An SQLite file in that folder.
std::unique_ptr<TargetTable> TableInAFile(const std::string& folder, const Rows& old);

// In a database of its own on the server of that system (driver_under_test.h).
std::unique_ptr<TargetTable> TableOnAServer(const std::string& system, const Rows& old);

}  // namespace qmx::test::faults
