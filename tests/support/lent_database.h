// A database with the local tables in it and nothing in them, of the system that QMX_TEST_COPY_OVER names, for one
// test.
//
// Making one takes a server as long as hundreds of statements. So the next test gets it again, emptied, unless the
// tables themselves were changed. What is kept is dropped when the last test has run.
#pragma once

#include <memory>

#include "platform/database.h"
#include "tests/support/driver_under_test.h"

namespace qmx::test {

class LentDatabase {
 public:
  static std::unique_ptr<LentDatabase> OfTheSystemUnderTest();  // null for SQLite's own driver

  explicit LentDatabase(const std::string& system);
  ~LentDatabase();
  LentDatabase(const LentDatabase&) = delete;
  LentDatabase& operator=(const LentDatabase&) = delete;

  TestDatabase& Base() { return *kept_.database; }
  Connection& Quiet() { return *kept_.connection; }     // for the test itself
  void TablesAreChanged() { mayBeLentAgain_ = false; }  // by other statements than those that write rows

 private:
  struct Kept {
    std::string system;
    std::unique_ptr<TestDatabase> database;
    std::unique_ptr<Connection> connection;
  };
  class Shelf;
  static Shelf& shelf_;

  Kept kept_;
  bool mayBeLentAgain_ = true;
};

}  // namespace qmx::test
