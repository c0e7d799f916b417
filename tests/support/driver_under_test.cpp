#include "tests/support/driver_under_test.h"

#include "platform/sqlite/driver.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

class SqliteTestDatabase : public TestDatabase {
 public:
  Driver& GetDriver() override { return driver_; }
  std::string ConnectionText() const override {
    return "Provider=SQLite;Mode=Create;Data Source=" + folder_ / "local.db";
  }

 private:
  TempFolder folder_;
  SqliteDriver driver_;
};

}  // namespace

std::vector<DriverUnderTest> DriversUnderTest() {
  return {{"SQLite", [] { return std::make_unique<SqliteTestDatabase>(); }, "datetime", "text"}};
}

}  // namespace qmx::test
