#include "tools/qmxadmin/verify/erp_copy.h"

#include <utility>

#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"
#include "platform/batches/driver.h"
#include "platform/components/installed_components.h"
#include "platform/event_log.h"
#include "platform/failure_report.h"
#include "platform/names.h"
#include "platform/progress/progress.h"
#include "platform/sqlite/driver.h"
#include "platform/system/clock.h"
#include "platform/system/further_components.h"
#include "platform/system/text_files.h"
#include "schema/dialect.h"
#include "tools/qmxadmin/verify/temporary_folder.h"

namespace qmx {
namespace {

constexpr const char* kSource = "qmxadmin verify";

// Reads the machine's files and discards what the engine writes.
class FilesWithoutLogs : public SystemTextFiles {
 public:
  void OpenForAppend(const std::string&, int) override {}
  void OpenForInput(const std::string& path, int number) override {
    SystemTextFiles::OpenForInput(path, number);
    reads_ = true;
  }
  void Print(int, std::string_view) override {}
  void Write(int, std::initializer_list<std::string_view>) override {}
  void Close(int number) override {
    if (std::exchange(reads_, false)) SystemTextFiles::Close(number);
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

// An enumeration that ends after its first record.
class FirstRecord : public Dispatch {
 public:
  explicit FirstRecord(Object records) : records_(std::move(records)) {}
  Variant Invoke(const Member& member, std::span<const Argument> arguments) override {
    if (SameName(member.Name(), "hasMoreElements") && isRead_) return false;
    isRead_ |= SameName(member.Name(), "nextElement");
    return qmx::Invoke(records_, member, arguments);
  }
  void Describe(Error& error, const Member& member) const override { records_.Target()->Describe(error, member); }

 private:
  Object records_;
  bool isRead_ = false;
};

// A table's manager. Records the first day of the period that it is asked to list, and can end its listing after one
// record.
class WatchedManager : public Dispatch {
 public:
  WatchedManager(Object manager, ErpListing listing, ErpCopy::Extent extent, std::optional<DateTime>& firstStartDate)
      : manager_(std::move(manager)), listing_(std::move(listing)), extent_(extent), firstStartDate_(firstStartDate) {}
  Variant Invoke(const Member& member, std::span<const Argument> arguments) override {
    constexpr std::size_t kFirstStartDate = 4;
    const bool lists = SameName(member.Name(), listing_.list.Name());
    if (lists && SameName(member.Name(), "listActualCalendar") && arguments.size() > kFirstStartDate)
      firstStartDate_ = DateTime::Parse(arguments[kFirstStartDate].Value().ToText());
    Variant result = qmx::Invoke(manager_, member, arguments);
    if (!lists || extent_ == ErpCopy::Extent::AllRecords) return result;
    const Object records = result.ToObject();
    return records ? Variant(Object(std::make_shared<FirstRecord>(records))) : result;
  }
  void Describe(Error& error, const Member& member) const override { manager_.Target()->Describe(error, member); }

 private:
  Object manager_;
  ErpListing listing_;
  ErpCopy::Extent extent_;
  std::optional<DateTime>& firstStartDate_;
};

ErpListing ListingOf(const std::string& table) {
  for (ErpListing& listing : ErpListings()) {
    if (listing.table == table) return std::move(listing);
  }
  throw Error(errors::kInternal, kSource, "There is no listing of " + table + ".");
}

class WatchedComponents : public Components {
 public:
  WatchedComponents(Components& components, const std::string& table, ErpCopy::Extent extent,
                    std::optional<DateTime>& firstStartDate)
      : components_(components), listing_(ListingOf(table)), extent_(extent), firstStartDate_(firstStartDate) {}
  Object CreateObject(std::string_view progId) override {
    Object object = components_.CreateObject(progId);
    if (!SameName(progId, listing_.manager)) return object;
    return Object(std::make_shared<WatchedManager>(std::move(object), listing_, extent_, firstStartDate_));
  }

 private:
  Components& components_;
  ErpListing listing_;
  ErpCopy::Extent extent_;
  std::optional<DateTime>& firstStartDate_;
};

void Run(DriverSession& session, const std::string& statement) { session.Prepare(statement)->Step(); }

void CreateTables(const ConnectionText& text, LocalTable table, const std::vector<std::string>& calendars) {
  table.indexed = std::exchange(table.key, {});
  const auto session = SqliteDriver().Open(text.With("Mode", "Create"));
  Run(*session, SqliteDialect().CreateTable(table));
  for (const std::string& index : SqliteDialect().CreateIndexes(table)) Run(*session, index);
  Run(*session, SqliteDialect().CreateTable(LocalTableNamed("tstables")));
  if (!calendars.empty()) {
    Run(*session, SqliteDialect().CreateTable(LocalTableNamed("tsmdm140")));
    const auto employee = session->Prepare("insert into tsmdm140 (emno, ccal) values (?, ?)");
    for (const std::string& calendar : calendars) {
      const Variant code = calendar;
      employee->Bind(0, code);
      employee->Bind(1, code);
      employee->Step();
      employee->Reset();
    }
  }
  session->Close();
}

std::unique_ptr<DriverSession> OpenSession(const ConnectionText& text) {
  std::unique_ptr<DriverSession> session = SqliteDriver().Open(text);
  Run(*session, "pragma synchronous = off");
  return session;
}

// Hands out one open session.
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

ErpCopy::ErpCopy(const LocalTable& table, const std::string& component, const std::vector<std::string>& calendars,
                 Extent extent) {
  std::unique_ptr<DriverSession> engineSession, auditSession;
  {
    const TemporaryFolder folder;
    const ConnectionText text =
        ConnectionText("Provider=SQLite").With("Data Source", (folder.Path() / "erp.db").string());
    CreateTables(text, table, calendars);
    rows_ = OpenSession(text);
    engineSession = OpenSession(text);
    if (extent == Extent::OneRecordAndAudit) auditSession = OpenSession(text);
  }
  Copy(std::move(engineSession), table, component, extent);
  if (!auditSession) return;
  Run(*rows_, "update tstables set syme = 2");
  Copy(std::move(auditSession), table, component, std::nullopt);
}

void ErpCopy::Copy(std::unique_ptr<DriverSession> session, const LocalTable& table, const std::string& component,
                   std::optional<Extent> listing) {
  SystemClock clock;
  FilesWithoutLogs files;
  NoEventLog eventLog;
  InstalledComponents components(clock, ComponentFolders(), ComponentsOfTheSystem());
  WatchedComponents watched(components, table.name, listing.value_or(Extent::AllRecords), firstStartDate_);
  Components& used = listing ? static_cast<Components&>(watched) : components;
  OpenedDriver opened(std::move(session));
  BatchingDriver batched(opened);
  const std::unique_ptr<Progress> progress = Progress::FromEnvironment(table.name);
  Database database({&batched}, progress ? &progress->Counter() : nullptr);
  KeptFailure failures;
  Platform platform{clock, files, eventLog, used, database, failures};
  modDeclarations declarations;
  Outcome outcome;
  clsDataCopy(platform, declarations, outcome).StartDataCopy("Provider=SQLite", "", table.name, "", component);
  if (failures.failure) throw *failures.failure;
  if (!outcome.isComplete) throw Error(errors::kInternal, kSource, "The copy of " + table.name + " was not complete.");
}

}  // namespace qmx
