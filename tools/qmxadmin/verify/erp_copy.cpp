#include "tools/qmxadmin/verify/erp_copy.h"

#include <utility>

#include "copy/clsDataCopy.h"
#include "platform/batches/driver.h"
#include "platform/components/installed_components.h"
#include "platform/event_log.h"
#include "platform/failure_report.h"
#include "platform/names.h"
#include "platform/posix/clock.h"
#include "platform/posix/text_files.h"
#include "platform/progress/progress.h"
#include "platform/sqlite/driver.h"
#include "schema/dialect.h"
#include "tools/qmxadmin/verify/temporary_folder.h"

namespace qmx {
namespace {

constexpr const char* kSource = "qmxadmin verify";

// What the engine reads is the machine's, what it writes goes nowhere.
class FilesWithoutLogs : public PosixTextFiles {
 public:
  void OpenForAppend(const std::string&, int) override {}
  void OpenForInput(const std::string& path, int number) override {
    PosixTextFiles::OpenForInput(path, number);
    reads_ = true;
  }
  void Print(int, std::string_view) override {}
  void Write(int, std::initializer_list<std::string_view>) override {}
  void Close(int number) override {
    if (std::exchange(reads_, false)) PosixTextFiles::Close(number);
  }

 private:
  bool reads_ = false;
};

class NoEventLog : public EventLog {
 public:
  void StartLogging(const std::string&, int) override {}
  void LogEvent(std::string_view, int) override {}
};

class KeptFailure : public FailureReport {
 public:
  void Report(const Error& error) noexcept override { failure = error; }
  std::optional<Error> failure;
};

class Outcome : public DataCopyEvents {
 public:
  void DataCopyStarted(Variant, Variant) override {}
  void DataCopyError(Variant, Variant, Variant, Variant) override {}
  void DataCopyComplete(Variant, Variant, Variant, Variant, Variant) override { isComplete = true; }
  void DataCopyAlreadyInProgress(Variant, Variant) override {}
  void DataCopydone() override {}
  bool isComplete = false;
};

// Notes from which start date on a calendar manager is asked to list.
class WatchedManager : public Dispatch {
 public:
  WatchedManager(Object manager, std::optional<DateTime>& firstStartDate)
      : manager_(std::move(manager)), firstStartDate_(firstStartDate) {}
  Variant Invoke(const Member& member, std::span<const Argument> arguments) override {
    constexpr std::size_t kFirstStartDate = 4;
    if (SameName(member.Name(), "listActualCalendar") && arguments.size() > kFirstStartDate)
      firstStartDate_ = DateTime::Parse(arguments[kFirstStartDate].Value().ToText());
    return qmx::Invoke(manager_, member, arguments);
  }
  void Describe(Error& error, const Member& member) const override { manager_.Target()->Describe(error, member); }

 private:
  Object manager_;
  std::optional<DateTime>& firstStartDate_;
};

class WatchedComponents : public Components {
 public:
  WatchedComponents(Components& components, std::optional<DateTime>& firstStartDate)
      : components_(components), firstStartDate_(firstStartDate) {}
  Object CreateObject(std::string_view progId) override {
    Object object = components_.CreateObject(progId);
    if (!SameName(progId, "Calendars.CalendarManager")) return object;
    return Object(std::make_shared<WatchedManager>(std::move(object), firstStartDate_));
  }

 private:
  Components& components_;
  std::optional<DateTime>& firstStartDate_;
};

const LocalTable& TableNamed(const std::string& name) {
  for (const LocalTable& table : LocalTables()) {
    if (table.name == name) return table;
  }
  throw Error(errors::kInternal, kSource, "There is no table " + name + ".");
}

void MakeTables(const ConnectionText& text, const LocalTable& table, const std::vector<std::string>& calendars) {
  LocalTable withoutKey = table;
  withoutKey.key.clear();
  withoutKey.indexed = table.key;

  SqliteDriver sqlite;
  Database database({&sqlite});
  const auto connection = database.CreateConnection("ADODB.Connection");
  connection->Open(text.Text() + ";Mode=Create", "", "");
  connection->Execute(SqliteDialect().CreateTable(withoutKey));
  for (const std::string& index : SqliteDialect().CreateIndexes(withoutKey)) connection->Execute(index);
  connection->Execute(SqliteDialect().CreateTable(TableNamed("tstables")));
  if (!calendars.empty()) {
    connection->Execute(SqliteDialect().CreateTable(TableNamed("tsmdm140")));
    const auto employees = database.CreateRecordset("ADODB.Recordset");
    employees->Open("tsmdm140", *connection, kCursorKeyset, kLockOptimistic, kCommandTable);
    for (const std::string& calendar : calendars) {
      employees->AddNew();
      employees->Fields("emno") = calendar;
      employees->Fields("ccal") = calendar;
    }
    employees->Close();
  }
  connection->Close();
}

std::unique_ptr<DriverSession> OpenSession(const ConnectionText& text) {
  std::unique_ptr<DriverSession> session = SqliteDriver().Open(text);
  session->Prepare("pragma synchronous = off")->Step();
  return session;
}

// Gives the one session that it has.
class OpenedDriver : public Driver {
 public:
  explicit OpenedDriver(std::unique_ptr<DriverSession> session) : session_(std::move(session)) {}
  std::string Form() const override { return "\"Provider=SQLite\""; }
  bool Serves(const ConnectionText&) const override { return session_ != nullptr; }
  std::unique_ptr<DriverSession> Open(const ConnectionText&) override { return std::move(session_); }

 private:
  std::unique_ptr<DriverSession> session_;
};

}  // namespace

ErpCopy::ErpCopy(const LocalTable& table, const std::string& component, const std::vector<std::string>& calendars) {
  std::unique_ptr<DriverSession> engines;
  {
    const TemporaryFolder folder;
    const ConnectionText text =
        ConnectionText("Provider=SQLite").With("Data Source", (folder.Path() / "erp.db").string());
    MakeTables(text, table, calendars);
    rows_ = OpenSession(text);
    engines = OpenSession(text);
  }
  Copy(std::move(engines), table, component);
}

void ErpCopy::Copy(std::unique_ptr<DriverSession> session, const LocalTable& table, const std::string& component) {
  PosixClock clock;
  FilesWithoutLogs files;
  NoEventLog eventLog;
  InstalledComponents components(clock);
  WatchedComponents watched(components, firstStartDate_);
  OpenedDriver opened(std::move(session));
  BatchingDriver batched(opened);
  const std::unique_ptr<Progress> progress = Progress::FromEnvironment(table.name);
  Database database({&batched}, progress ? &progress->Counter() : nullptr);
  KeptFailure failures;
  Platform platform{clock, files, eventLog, watched, database, failures};
  modDeclarations declarations;
  Outcome outcome;
  clsDataCopy(platform, declarations, outcome).StartDataCopy("Provider=SQLite", "", table.name, "", component);
  if (failures.failure) throw *failures.failure;
  if (!outcome.isComplete) throw Error(errors::kInternal, kSource, "The copy of " + table.name + " was not complete.");
}

}  // namespace qmx
