// qmxadmin copy between a small sandbox ERP and a local database with all tables.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/database.h"
#include "tests/support/driver_under_test.h"
#include "tests/support/environment.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"
#include "tests/tools/qmxadmin/admin_on_a_system.h"

namespace qmx::test {

class Copying : public testing::Test {
 protected:
  explicit Copying(std::unique_ptr<TestDatabase> database) : base_(std::move(database)) {
    std::filesystem::create_directory(folder_ / "logs");
    const Process init = test::Run(QMX_ADMIN, {"init", base_->ConnectionText(), ""});
    if (init.status != 0) throw std::runtime_error("no local tables: " + init.err);
  }

  std::vector<std::string> Arguments(const std::vector<std::string>& more) const {
    std::vector<std::string> arguments = {"copy",           base_->ConnectionText(), "",        "--logs",
                                          folder_ / "logs", "--component",           component_};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }
  Process Copy(const std::vector<std::string>& more) { return test::Run(admin_, Arguments(more), environment_); }

  std::vector<std::string> VerifyArguments(const std::vector<std::string>& more) const {
    std::vector<std::string> arguments = {"verify", base_->ConnectionText(), "", "--component", component_};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }
  Process Verify(const std::vector<std::string>& more) {
    return test::Run(admin_, VerifyArguments(more), environment_);
  }

  void Sql(const std::string& statement) {
    Connection connection({&base_->GetDriver()}, nullptr);
    connection.Open(base_->ConnectionText(), "", "");
    connection.Execute(statement);
    connection.Close();
  }

  int Rows(const std::string& tableAndCondition) {
    Connection connection({&base_->GetDriver()}, nullptr);
    connection.Open(base_->ConnectionText(), "", "");
    Recordset rows(nullptr);
    rows.Open("select count(*) from " + tableAndCondition, connection, kCursorKeyset, kLockOptimistic, kCommandText);
    return rows.Fields(std::size_t{0}).Value().ToInt32();
  }

  static std::size_t Place(const std::string& text, const std::string& piece) {
    const std::size_t place = text.find(piece);
    EXPECT_NE(place, std::string::npos) << piece << " does not stand in\n" << text;
    return place;
  }

  std::unique_ptr<TestDatabase> base_;
  TempFolder folder_;
  std::string admin_ = QMX_ADMIN;
  std::string component_ = "OrvanSandbox, " + ErpFile();
  std::map<std::string, std::string> environment_{{"QMX_COMPONENTS", SANDBOX_COMPONENTS}, {"LC_ALL", "C"}};

 private:
  // Made once: a copy only reads it.
  static const std::string& ErpFile() {
    static const TempFolder folder;
    static const std::string file = [] {
      const Process made = test::Run(
          ORVAN_SANDBOX, {"make", folder / "orvan.db", "--seed", "1", "--service-types", "3", "--orders", "5",
                          "--addresses", "5", "--configurations", "5", "--calendars", "2", "--calendar-days", "100"});
      if (made.status != 0) throw std::runtime_error("no sandbox ERP: " + made.err);
      return folder / "orvan.db";
    }();
    return file;
  }
};

class CopyingOnASystem : public Copying, public testing::WithParamInterface<DriverUnderTest> {
 protected:
  CopyingOnASystem() : Copying(GetParam().make()) {}

  WithoutLeakCheck withoutLeakCheck_;
};

}  // namespace qmx::test
