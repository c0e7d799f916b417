#include "tests/support/lent_database.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <vector>

#include "schema/dialect.h"
#include "schema/local_tables.h"

namespace qmx::test {

// Emptied here and not by a destructor of its own: at the end of the process the drivers are unloaded already.
class LentDatabase::Shelf : public testing::Environment {
 public:
  void TearDown() override { free_.clear(); }

  Kept Take(const std::string& system) {
    const auto fits = [&](const Kept& kept) { return kept.system == system; };
    const auto found = std::find_if(free_.begin(), free_.end(), fits);
    if (found == free_.end()) return Make(system);
    Kept kept = std::move(*found);
    free_.erase(found);
    Empty(*kept.connection);
    return kept;
  }

  void PutBack(Kept kept) { free_.push_back(std::move(kept)); }

 private:
  static void Empty(Connection& connection) {
    std::string all;
    for (const LocalTable& table : LocalTables()) {
      const std::string statement = "delete from " + table.name;
      if (connection.System() != "PostgreSQL") {
        connection.Execute(statement);
      } else {
        all += (all.empty() ? "with " : ", ") + table.name + "_rows as (" + statement + ")";
      }
    }
    // In one statement: the driver asks the server five times for each.
    if (!all.empty()) connection.Execute(all + " delete from tstables where 1=0");
  }

  static Kept Make(const std::string& system) {
    const std::vector<DriverUnderTest> found =
        DriversUnderTest([&](const DriverUnderTest& driver) { return driver.name == system; });
    if (found.empty()) throw std::runtime_error("there is no " + system + " for the tests");
    Kept made{system, found[0].make(), nullptr};
    made.connection = std::make_unique<Connection>(std::vector<Driver*>{&made.database->GetDriver()}, nullptr);
    made.connection->Open(made.database->ConnectionText(), "", "");
    const Dialect& dialect = *DialectOfSystem(made.connection->System());
    for (const LocalTable& table : LocalTables()) made.connection->Execute(dialect.CreateTable(table));
    return made;
  }

  std::vector<Kept> free_;
};

LentDatabase::Shelf& LentDatabase::shelf_ = *static_cast<Shelf*>(testing::AddGlobalTestEnvironment(new Shelf));

std::unique_ptr<LentDatabase> LentDatabase::OfTheSystemUnderTest() {
  const char* system = std::getenv("QMX_TEST_COPY_OVER");
  return system ? std::make_unique<LentDatabase>(system) : nullptr;
}

LentDatabase::LentDatabase(const std::string& system) : kept_(shelf_.Take(system)) {}

LentDatabase::~LentDatabase() {
  if (mayBeLentAgain_) shelf_.PutBack(std::move(kept_));
}

}  // namespace qmx::test
