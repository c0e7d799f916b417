#include "platform/database.h"
#include "platform/join.h"
#include "platform/names.h"
#include "platform/open_connection.h"

namespace qmx {
namespace {

constexpr const char* kSource = "ADODB.Connection";

ConnectionText CompleteText(const std::string& connectionText, const std::string& user, const std::string& password) {
  ConnectionText text(connectionText);
  if (!user.empty()) text = text.With("UID", user);
  if (!password.empty()) text = text.With("PWD", password);
  return text;
}

[[noreturn]] void RaiseUnserved(const ConnectionText& text, const std::vector<Driver*>& drivers) {
  const std::string forms = Joined(drivers, " or ", [](const Driver* driver) { return driver->Form(); });
  const std::optional<std::string> provider = text.Get("Provider");
  const std::string what = provider ? "The connection text names the provider \"" + *provider + "\", which is unknown"
                                    : "The connection text does not say which database it means";
  throw Error(errors::kInvalidCall, kSource, what + ". It must be of the form " + forms + ".")
      .With("connection text", text.Masked());
}

std::int64_t Run(OpenConnection& session, const SqlText& text, bool mayWait) {
  try {
    ConnectionStatement statement = session.Statement(text, mayWait);
    while (statement.Step()) continue;
    return statement.RowsAffected();
  } catch (Error& error) {
    error.With("statement", text.Text());
    throw;
  }
}

}  // namespace

Driver& DriverFor(const ConnectionText& text, const std::vector<Driver*>& drivers) {
  for (Driver* driver : drivers) {
    if (driver->Serves(text)) return *driver;
  }
  RaiseUnserved(text, drivers);
}

DriverSession& OpenConnection::Driver() const {
  if (!driver_) throw Error(errors::kConnectionClosed, kSource, "The connection is closed.");
  return *driver_;
}

StoredTable& OpenConnection::Table(const std::string& name) {
  std::unique_ptr<StoredTable>& table = tables_[FoldName(name)];
  if (!table) table = std::make_unique<StoredTable>(Driver(), unit_, name);
  return *table;
}

ConnectionStatement OpenConnection::Statement(const SqlText& text, bool mayWait) {
  Driver();
  return {statements_, text, mayWait};
}

void OpenConnection::SelectCatalog(const std::string& name) {
  if (openRecordsets_ > 0) {
    throw Error(errors::kNotAllowedNow, kSource,
                "The default database cannot be changed to \"" + name + "\" while a record set is open.");
  }
  tables_.clear();
  statements_.Clear();
  Driver().SelectCatalog(name);
}

Row OpenConnection::TakeRow() noexcept {
  if (spareRows_.empty()) return {};
  Row row = std::move(spareRows_.back());
  spareRows_.pop_back();
  return row;
}

void OpenConnection::ReturnRow(Row row) noexcept {
  if (spareRows_.size() == kMostSpareRows) return;
  row.clear();
  spareRows_.push_back(std::move(row));
}

// The search for a table that is spelled otherwise begins with a refused statement, after which some systems refuse the
// whole transaction.
void OpenConnection::DescribeEarly(const std::string& table) {
  try {
    Table(table);
  } catch (const Error&) {  // whoever uses the table raises it
  }
}

void OpenConnection::EnableSavepoints() {
  if (openRecordsets_ > 0) {
    throw Error(errors::kNotAllowedNow, kSource, "Savepoints cannot be enabled while a record set is open.");
  }
  tables_.clear();
  statements_.Clear();
  Driver().EnableSavepoints();
}

// What was prepared before is prepared again, because only a first execution has a savepoint to return to.
void OpenConnection::Atomically(const std::function<void()>& work) {
  Driver();
  statements_.Clear();
  unit_.Run(work);
}

void OpenConnection::Close() {
  tables_.clear();
  statements_.Clear();
  unit_.Abandon();
  const std::unique_ptr<DriverSession> driver = std::move(driver_);
  const auto close = [&] {
    retries_ = driver->Retries();
    driver->Close();
  };
  try {
    driver->Commit();
  } catch (...) {
    close();
    throw;
  }
  close();
}

Connection::Connection(const std::vector<Driver*>& drivers, DatabaseObservers observers)
    : drivers_(drivers), observers_(std::move(observers)) {}

Connection::~Connection() {
  try {
    if (session_) session_->Close();
  } catch (...) {  // a caller that wants the error calls Close
  }
}

void Connection::Open(const std::string& connectionText, const std::string& user, const std::string& password) {
  std::string masked;
  Observed(
      observers_,
      [&] {
        if (session_) throw Error(errors::kAlreadyOpen, kSource, "The connection is open already.");
        const ConnectionText text = CompleteText(connectionText, user, password);
        masked = text.Masked();
        std::unique_ptr<DriverSession> driver = DriverFor(text, drivers_).Open(text);
        driver->Timeout(std::chrono::seconds(timeout_));
        session_ = std::make_shared<OpenConnection>(std::move(driver));
      },
      [&](DatabaseObserver& observer, const Error* error) { observer.ConnectionOpened(masked, error); });
}

std::string Connection::defaultdatabase() const {
  return TranslateExceptions([&] { return OpenSession().Catalog(); });
}

void Connection::defaultdatabase(const std::string& name) {
  Observed(
      observers_, [&] { OpenSession().SelectCatalog(name); },
      [&](DatabaseObserver& observer, const Error* error) { observer.DefaultDatabaseSet(name, error); });
}

std::int64_t Connection::Execute(const SqlText& statement) { return Execute(statement, false); }

void Connection::ExecuteSoon(const SqlText& statement) { Execute(statement, !observers_.HearOfStatements()); }

std::int64_t Connection::Execute(const SqlText& statement, bool mayWait) {
  std::int64_t affected = 0;
  const std::string text = observers_.IsEmpty() ? std::string() : statement.Text();
  observers_.ForEach([&](DatabaseObserver& observer) { observer.Executing(text); });
  Observed(
      observers_,
      [&] {
        OpenConnection& session = OpenSession();
        statement.Check();
        affected = Noted(session_.get(), [&] { return Run(session, statement, mayWait); });
      },
      [&](DatabaseObserver& observer, const Error* error) { observer.Executed(text, affected, error); });
  return affected;
}

std::string Connection::System() const {
  return TranslateExceptions([&] { return OpenSession().Driver().System(); });
}

TableDescription Connection::Describe(const std::string& table) {
  return Noted(session_.get(), [&] { return OpenSession().Driver().Describe(table); });
}

void Connection::Together(const std::function<void()>& work) {
  const std::shared_ptr<OpenConnection> session = session_;
  if (!session) return work();
  const auto mayGroup = [&](bool may) {
    if (session->IsOpen()) TranslateExceptions([&] { session->Driver().MayGroup(may); });
  };
  mayGroup(true);
  try {
    work();
  } catch (...) {
    mayGroup(false);
    throw;
  }
  mayGroup(false);
}

void Connection::Atomically(const std::function<void()>& work) {
  OpenSession();
  const std::shared_ptr<OpenConnection> session = session_;
  Noted(session.get(), [&] { session->Atomically(work); });
}

void Connection::PrepareAtomic(const std::vector<std::string>& tables) {
  TranslateExceptions([&] {
    OpenSession().EnableSavepoints();
    for (const std::string& table : tables) {
      if (OpenSession().Driver().CanRollBack(table)) {
        OpenSession().DescribeEarly(table);
        continue;
      }
      throw Error(
          errors::kNotAllowedNow, kSource,
          "The rows of the table " + table + " cannot be committed together: its storage engine has no transactions.")
          .With("table", table)
          .With("what to do",
                "convert the table, as with \"alter table " + table + " engine=InnoDB\", or copy without \"whole\"");
    }
  });
}

bool Connection::LocksWholeDatabase() const {
  return TranslateExceptions([&] { return OpenSession().Driver().LocksWholeDatabase(); });
}

int Connection::CommandTimeout() const { return timeout_; }

void Connection::CommandTimeout(int seconds) {
  Observed(
      observers_,
      [&] {
        if (seconds < 0) {
          throw Error(errors::kInvalidCall, kSource,
                      "CommandTimeout cannot be negative: " + std::to_string(seconds) + ".");
        }
        Noted(session_.get(), [&] {
          if (session_) session_->Driver().Timeout(std::chrono::seconds(seconds));
        });
        timeout_ = seconds;
      },
      [&](DatabaseObserver& observer, const Error* error) { observer.CommandTimeoutSet(seconds, error); });
}

int Connection::State() const { return session_ ? kStateOpen : kStateClosed; }

void Connection::Close() {
  std::shared_ptr<OpenConnection> session;
  Observed(
      observers_,
      [&] {
        OpenSession();
        session = std::move(session_);
        session->Close();
      },
      [&](DatabaseObserver& observer, const Error* error) {
        observer.ConnectionClosed(session ? session->Retries() : 0, error);
      });
}

OpenConnection& Connection::OpenSession() const {
  if (!session_) throw Error(errors::kClosed, kSource, "The connection is closed.");
  return *session_;
}

}  // namespace qmx
