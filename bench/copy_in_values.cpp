// copy_in_values COMMANDLINE: the program with added rows in the plain form on servers too: many rows after "values"
// instead of arrays. Exits with the run's status.
#include <iostream>

#include "platform/components/installed_components.h"
#include "platform/database.h"
#include "platform/drivers/local_drivers.h"
#include "platform/modDeclarations.h"
#include "platform/platform.h"
#include "platform/system/clock.h"
#include "platform/system/event_log.h"
#include "platform/system/failure_report.h"
#include "platform/system/text_files.h"
#include "startup/modStartUp.h"

namespace {

using namespace qmx;

class ValuesSession : public DriverSession {
 public:
  explicit ValuesSession(std::unique_ptr<DriverSession> inner) : inner_(std::move(inner)) {}
  std::unique_ptr<DriverRows> PrepareRows(const RowInsert& insert) override { return RowsInValues(*inner_, insert); }

  std::unique_ptr<DriverStatement> Prepare(const std::string& statement) override { return inner_->Prepare(statement); }
  std::unique_ptr<DriverStatement> PrepareInsert(const RowInsert& insert) override {
    return inner_->PrepareInsert(insert);
  }
  std::string IntegerParameter() const override { return inner_->IntegerParameter(); }
  TableDescription Describe(const std::string& table) override { return inner_->Describe(table); }
  std::string QuoteIdentifier(const std::string& name) const override { return inner_->QuoteIdentifier(name); }
  std::string System() const override { return inner_->System(); }
  std::string Catalog() override { return inner_->Catalog(); }
  void SelectCatalog(const std::string& name) override { inner_->SelectCatalog(name); }
  void Timeout(std::chrono::seconds limit) override { inner_->Timeout(limit); }
  void Begin() override { inner_->Begin(); }
  void Rollback() override { inner_->Rollback(); }
  void Commit() override { inner_->Commit(); }
  void Close() override { inner_->Close(); }
  GroupLimits Grouping() override { return inner_->Grouping(); }
  void MayGroup(bool may) override { inner_->MayGroup(may); }

 private:
  std::unique_ptr<DriverSession> inner_;
};

class ValuesDriver : public Driver {
 public:
  explicit ValuesDriver(Driver& inner) : inner_(inner) {}
  std::string Form() const override { return inner_.Form(); }
  bool Serves(const ConnectionText& text) const override { return inner_.Serves(text); }
  std::unique_ptr<DriverSession> Open(const ConnectionText& text) override {
    return std::make_unique<ValuesSession>(inner_.Open(text));
  }

 private:
  Driver& inner_;
};

int Run(const std::string& commandLine) {
  SystemClock clock;
  SystemTextFiles files;
  SystemEventLog eventLog(clock, files);
  StandardErrorReport failures;
  InstalledComponents components(clock);
  std::vector<std::unique_ptr<ValuesDriver>> inValues;
  LocalDrivers drivers(
      [&](Driver& inner) -> Driver& { return *inValues.emplace_back(std::make_unique<ValuesDriver>(inner)); });
  Database database(drivers.All());
  Platform platform{clock, files, eventLog, components, database, failures};
  modDeclarations declarations;
  Main(platform, declarations, commandLine);
  return static_cast<int>(declarations.exitStatus);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: copy_in_values COMMANDLINE\n";
    return 2;
  }
  try {
    return Run(argv[1]);
  } catch (const Error& failure) {
    std::cerr << "copy_in_values: " << failure.Description() << '\n';
    return 2;
  }
}
