// The drivers over which the record-set suite runs. Another driver joins by one more entry in DriversUnderTest().
//
// The differences between database systems are data here, so that tests need not know which system they run on.
#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "platform/database_driver.h"

namespace qmx::test {

// A fresh database without tables, gone with this object.
class TestDatabase {
 public:
  virtual ~TestDatabase() = default;
  virtual Driver& GetDriver() = 0;
  virtual Driver& PlainDriver() { return GetDriver(); }  // without batches around it
  virtual std::string ConnectionText() const = 0;
};

struct DriverUnderTest {
  std::string name;
  std::function<std::unique_ptr<TestDatabase>()> make;
  // Columns' declared types where systems differ.
  std::string dateTimeType;
  std::string longTextType;
  // Within a transaction, keeps others from writing the table people.
  std::string lockStatement;
};

inline void PrintTo(const DriverUnderTest& driver, std::ostream* out) { *out << driver.name; }

std::vector<DriverUnderTest> DriversUnderTest();
std::vector<DriverUnderTest> DriversUnderTest(const std::function<bool(const DriverUnderTest&)>& fits);
std::vector<DriverUnderTest> ServersUnderTest();

}  // namespace qmx::test
