// Everything that a copy needs: a scripted ERP, a clock that shows 2026-11-20 14:05:09, text files in memory, and its
// own database with the local tables. One call log records all calls. The database is SQLite's, or one of the system
// that QMX_TEST_COPY_OVER names (lent_database.h). It is reached through the product's drivers.
// With QMX_TEST_COPY_MODE=whole every run is in whole mode.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "copy/clsDataCopy.h"
#include "platform/database.h"
#include "platform/drivers/local_drivers.h"
#include "platform/event_log.h"
#include "platform/failure_report.h"
#include "platform/modDeclarations.h"
#include "tests/support/call_log.h"
#include "tests/support/data_copy_inside.h"
#include "tests/support/fake_clock.h"
#include "tests/support/lent_database.h"
#include "tests/support/memory_files.h"
#include "tests/support/recording_observer.h"
#include "tests/support/scripted_components.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {

// Writes the events into the call log: event Started 2026-11-20 14:05:09, "tsmdm030"
class RecordingEvents : public DataCopyEvents {
 public:
  explicit RecordingEvents(CallLog& log) : log_(log) {}

  std::string failOn;  // "Started", "Complete", ...: that event raises error 1234

  void DataCopyStarted(Variant iTime, Variant iTableName) override { Add("Started", {iTime, iTableName}); }
  void DataCopyError(Variant iTime, Variant iTableName, Variant ieNumber, Variant ieMessage) override {
    Add("Error", {iTime, iTableName, ieNumber, ieMessage});
  }
  void DataCopyComplete(Variant iTime, Variant iTableName, Variant icount, Variant ucount, Variant dcount) override {
    Add("Complete", {iTime, iTableName, icount, ucount, dcount});
  }
  void DataCopyAlreadyInProgress(Variant iTime, Variant iTableName) override {
    Add("AlreadyInProgress", {iTime, iTableName});
  }
  void DataCopydone() override { Add("done", {}); }

 private:
  void Add(const std::string& event, std::initializer_list<Variant> values);
  CallLog& log_;
};

class RecordingEventLog : public EventLog {
 public:
  void StartLogging(const std::string&, int) override {}
  void LogEvent(std::string_view text, int) override { entries.emplace_back(text); }
  std::vector<std::string> entries;
};

class RecordingFailures : public FailureReport {
 public:
  void Report(const Error& error) noexcept override { chains.push_back(DescribeChain(error)); }
  std::vector<std::string> chains;
};

class CopyRig {
 public:
  using DecorateComponents = std::function<Components&(Components&)>;

  // The database's driver may be decorated above and below the batches, the components as a whole. The clock is the
  // batches' own.
  explicit CopyRig(LocalDrivers::Decorate aboveBatches = {}, DecorateComponents decorateComponents = {},
                   LocalDrivers::Decorate belowBatches = {},
                   SteadyClock& batchesClock = SteadyClock::OfTheSystem());  // borrowed

  static constexpr const char* kComponent = "Orvan, main";
  static constexpr const char* kLogFolder = "C:\\log";
  std::string ConnectionText() const;

  // One whole run: StartDataCopy on an engine of its own.
  void Run(const std::string& tableName);

  std::int64_t Retries() const { return drivers_.Retries(); }  // of all runs

  // The events of the last run, and the copy log.
  std::vector<std::string> Events() const { return calls.StartingWith({"event "}); }
  std::string CopyLog(const std::string& tableCode) const;

  // The local database, past the call log.
  void Sql(const std::string& statement);
  std::vector<std::string> Rows(const std::string& table, const std::vector<std::string>& columns);
  void ControlRecord(const std::string& tableCode, int syncMethod, const std::string& lutm = "");  // a new one
  std::string Lutm(const std::string& tableCode);
  std::string InUse(const std::string& tableCode);

  TempFolder folder{TempFolder::Place::InMemory};
  CallLog calls;
  FakeClock clock;
  MemoryFiles files{calls};
  ScriptedErp erp{calls};
  RecordingEvents events{calls};
  RecordingEventLog eventLog;
  RecordingFailures failures;
  modDeclarations declarations;

 private:
  std::unique_ptr<LentDatabase> lent_;
  LocalDrivers drivers_;
  RecordingObserver observer_{calls};
  Database database_;
  LocalDrivers quietDrivers_;
  Connection quietConnection_{quietDrivers_.All(), nullptr};
  Connection& QuietConnection();

 public:
  Platform platform;
  clsDataCopy engine;  // for tests of single routines; Run makes its own
  DataCopyInside inside{engine};
};

}  // namespace qmx::test
