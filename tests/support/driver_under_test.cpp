#include "tests/support/driver_under_test.h"

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <stdexcept>

#include "platform/batches/driver.h"
#include "platform/odbc/connection.h"
#include "platform/odbc/connection_string.h"
#include "platform/odbc/driver.h"
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

class SqliteInBatchesTestDatabase : public SqliteTestDatabase {
 public:
  Driver& GetDriver() override { return batching_; }
  Driver& PlainDriver() override { return SqliteTestDatabase::GetDriver(); }

 private:
  BatchingDriver batching_{PlainDriver()};
};

class SqliteOverOdbcTestDatabase : public TestDatabase {
 public:
  Driver& GetDriver() override { return driver_; }
  std::string ConnectionText() const override {
    return "Driver=SQLite3;SyncPragma=OFF;Timeout=1000;Database=" + folder_ / "local.db";
  }

 private:
  TempFolder folder_;
  OdbcDriver driver_;
};

// A database of its own on a server.
class ServerTestDatabase : public TestDatabase {
 public:
  // `creation` is what follows "create database NAME".
  ServerTestDatabase(std::string server, const std::string& creation) : server_(std::move(server)) {
    static std::atomic<int> count = 0;
    name_ = "qmx_test_" + std::to_string(getpid()) + "_" + std::to_string(++count);
    OdbcConnection(server_).Run("create database " + name_ + creation);
  }
  ~ServerTestDatabase() override {
    try {
      OdbcConnection connection(server_);
      connection.Run("drop database " + name_ + (connection.Dialect().system == "PostgreSQL" ? " with (force)" : ""));
    } catch (const std::exception&) {  // the server goes away with everything in it
    }
  }
  ServerTestDatabase(const ServerTestDatabase&) = delete;
  ServerTestDatabase& operator=(const ServerTestDatabase&) = delete;

  Driver& GetDriver() override { return batching_; }
  Driver& PlainDriver() override { return driver_; }
  std::string ConnectionText() const override { return WithOdbcKeyword(server_, "Database", name_); }

 private:
  std::string server_;
  std::string name_;
  OdbcDriver driver_;
  BatchingDriver batching_{driver_};
};

// tests/servers/with_servers.sh names the servers. Without one its tests are not there, except in CI, where they fail.
void AddServer(std::vector<DriverUnderTest>& drivers, DriverUnderTest driver, const char* variable,
               const std::string& creation) {
  const char* server = std::getenv(variable);
  const char* ci = std::getenv("CI");
  if (!server && !(ci && std::string(ci) == "true")) return;
  driver.make = [=]() -> std::unique_ptr<TestDatabase> {
    if (!server) throw std::runtime_error(std::string(variable) + " names no server");
    return std::make_unique<ServerTestDatabase>(server, creation);
  };
  drivers.push_back(std::move(driver));
}

}  // namespace

std::vector<DriverUnderTest> DriversUnderTest() {
  const std::string update = "update people set floor=2";
  std::vector<DriverUnderTest> drivers = {
      {"SQLite", [] { return std::make_unique<SqliteTestDatabase>(); }, "datetime", "text", update},
      {"SQLiteInBatches", [] { return std::make_unique<SqliteInBatchesTestDatabase>(); }, "datetime", "text", update},
      {"SQLiteOverOdbc", [] { return std::make_unique<SqliteOverOdbcTestDatabase>(); }, "datetime", "text", update}};
  AddServer(drivers, {"PostgreSQL", {}, "timestamp(0)", "text", "lock table people in share mode"},
            "QMX_TEST_POSTGRESQL", "");
  AddServer(drivers, {"MariaDB", {}, "datetime", "text", "select * from people for update"}, "QMX_TEST_MARIADB",
            " character set utf8mb4 collate utf8mb4_nopad_bin");
  return drivers;
}

std::vector<DriverUnderTest> DriversUnderTest(const std::function<bool(const DriverUnderTest&)>& fits) {
  std::vector<DriverUnderTest> drivers = DriversUnderTest();
  std::erase_if(drivers, std::not_fn(fits));
  return drivers;
}

std::vector<DriverUnderTest> ServersUnderTest() {
  return DriversUnderTest([](const DriverUnderTest& driver) { return !driver.name.starts_with("SQLite"); });
}

}  // namespace qmx::test
