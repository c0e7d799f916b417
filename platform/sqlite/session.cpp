#include "platform/sqlite/session.h"

#include <sqlite3.h>

#include <algorithm>
#include <map>
#include <thread>

#include "platform/error.h"
#include "platform/execution.h"
#include "platform/sqlite/errors.h"
#include "platform/sqlite/read_only.h"
#include "platform/sqlite/statement.h"
#include "platform/sqlite/types.h"

namespace qmx {
namespace {

namespace fs = std::filesystem;

constexpr int kInstructionsBetweenLooks = 10000;  // about a tenth of a millisecond

int StopWhenLate(void* deadline) { return static_cast<Deadline*>(deadline)->HasPassed() ? 1 : 0; }

// Waits briefly for the lock: a write of one row takes less than a millisecond.
int WaitForLock(void* context, int attempts) {
  const auto& deadline = *static_cast<Deadline*>(context);
  if (deadline.HasPassed()) return 0;
  std::this_thread::sleep_for(deadline.AtMost(std::chrono::milliseconds(std::min(1 + attempts / 4, 20))));
  return 1;
}

[[noreturn]] void RaiseCannotOpen(const fs::path& file, const std::string& why) {
  throw Error(errors::kProviderUnspecified, "SQLite", "The database " + file.string() + " cannot be opened: " + why)
      .With("file", file.string());
}

void RequireFile(const fs::path& file, bool mayCreate) {
  std::error_code problem;
  const fs::file_status status = fs::status(file, problem);
  if (fs::is_regular_file(status)) return;
  if (status.type() == fs::file_type::none) RaiseCannotOpen(file, problem.message() + ".");
  if (fs::exists(status)) RaiseCannotOpen(file, "it is no regular file.");
  const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
  if (!fs::is_directory(folder, problem)) {
    RaiseCannotOpen(file, "there is no folder " + folder.string() + ".");
  }
  if (mayCreate) return;
  RaiseCannotOpen(file, "there is no such file. Check the name, or make the database with \"qmxadmin init\".");
}

std::string FileName(const std::string& catalog) {
  if (!catalog.empty() && catalog.find_first_of(std::string("/\\\0", 3)) == std::string::npos) return catalog + ".db";
  throw Error(
      errors::kProviderUnspecified, "SQLite",
      "\"" + catalog + "\" cannot be a default database: it must be the name of a file without folder and \".db\".");
}

}  // namespace

void SqliteDriverSession::Closer::operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }

SqliteDriverSession::SqliteDriverSession(const fs::path& source, SqliteMode mode) : source_(source), mode_(mode) {
  std::error_code ignored;
  isFolder_ = fs::is_directory(source_, ignored);
  if (isFolder_) return;
  handle_ = OpenFile(source_);
  catalog_ = source_.stem().string();
}

SqliteDriverSession::Handle SqliteDriverSession::OpenFile(const fs::path& file) {
  const bool mayCreate = mode_ == SqliteMode::Create;
  RequireFile(file, mayCreate);
  sqlite3* opened = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | (mayCreate ? SQLITE_OPEN_CREATE : 0);
  const int code = sqlite3_open_v2(file.string().c_str(), &opened, flags, nullptr);
  Handle handle(opened);
  if (code != SQLITE_OK) RaiseCannotOpen(file, (opened ? sqlite3_errmsg(opened) : "out of memory") + std::string("."));
  sqlite3_extended_result_codes(opened, 1);
  sqlite3_busy_handler(opened, WaitForLock, &deadline_);
  sqlite3_progress_handler(opened, kInstructionsBetweenLooks, StopWhenLate, &deadline_);
  const bool isReadOnly = sqlite3_db_readonly(opened, "main") == 1;  // SQLite opened it without the right to write
  if (isReadOnly && mode_ != SqliteMode::Read) throw ReadOnlyError(file);
  if (isReadOnly) RequireReadableWithoutWriting(file);
  try {
    Configure(opened);
  } catch (Error& error) {
    const std::string code = error.DetailOf("code");
    if (code == "SQLITE_NOTADB") RaiseCannotOpen(file, "the file is no SQLite database.");
    const bool hadToWrite = error.Number() == errors::kPermissionDenied;
    if (mode_ == SqliteMode::Read && (hadToWrite || code == "SQLITE_CANTOPEN")) RequireReadableWithoutWriting(file);
    if (mode_ == SqliteMode::Read && hadToWrite) throw UnfinishedTransactionError(file);
    error.With("file", file.string());
    throw;
  }
  return handle;
}

// SQLite does not wait for the lock when several programs switch a file to WAL mode at the same moment.
void SqliteDriverSession::Configure(sqlite3* opened) {
  std::vector<const char*> settings = {"pragma schema_version", "pragma journal_mode=wal", "pragma synchronous=normal",
                                       "pragma wal_autocheckpoint=16000"};
  if (mode_ == SqliteMode::Read) settings.resize(1);  // it reads the file, so a failure comes now
  Deadline deadline = deadline_;
  deadline.Start();
  for (int attempts = 0;; ++attempts) {
    try {
      for (const char* setting : settings) {
        SqliteDriverStatement statement(opened, deadline_, transaction_, setting);
        Execution(statement).Run();
      }
      return;
    } catch (const Error& error) {
      if (error.Number() != errors::kTimeout || !WaitForLock(&deadline, attempts)) throw;
    }
  }
}

std::unique_ptr<DriverStatement> SqliteDriverSession::Prepare(const std::string& statement) {
  return std::make_unique<SqliteDriverStatement>(Selected(), deadline_, transaction_, statement);
}

TableDescription SqliteDriverSession::Describe(const std::string& table) {
  constexpr const char* kColumns = "select name, type, \"notnull\", pk from pragma_table_xinfo(?) where hidden <> 1";
  SqliteDriverStatement query(Selected(), deadline_, transaction_, kColumns);
  const Variant name(table);
  query.Bind(0, name);
  TableDescription description;
  description.name = table;
  std::map<int, std::size_t> primaryKey;  // by position in the key
  std::set<std::string> required;
  while (query.Step()) {
    const std::string column = query.Value(0).ToText();
    if (const int place = query.Value(3).ToInt32(); place > 0) primaryKey[place] = description.columns.size();
    if (query.Value(2).ToInt32() != 0) required.insert(column);
    description.columns.push_back({column, KindOfDeclaredType(query.Value(1).ToText())});
  }
  if (description.columns.empty()) {
    throw Error(errors::kNoSuchTable, "SQLite",
                "There is no table \"" + table + "\" in the database \"" + catalog_ +
                    "\". Check the database, or make its tables with \"qmxadmin init\".")
        .With("table", table)
        .With("file", sqlite3_db_filename(Selected(), "main"));
  }
  for (const auto& [place, column] : primaryKey) description.key.push_back(column);
  if (!description.key.empty()) return description;
  for (const std::string& column : UniqueKey(table, required)) {
    const auto found = std::find_if(description.columns.begin(), description.columns.end(),
                                    [&](const ColumnDescription& candidate) { return candidate.name == column; });
    description.key.push_back(static_cast<std::size_t>(found - description.columns.begin()));
  }
  return description;
}

// Returns the columns of the first unique index without nullable columns; none if there is no such index.
std::vector<std::string> SqliteDriverSession::UniqueKey(const std::string& table,
                                                        const std::set<std::string>& required) {
  constexpr const char* kUniqueColumns =
      "select l.name, i.name from pragma_index_list(?) l, pragma_index_info(l.name) i"
      " where l.\"unique\" and not l.partial order by l.seq, i.seqno";
  SqliteDriverStatement query(Selected(), deadline_, transaction_, kUniqueColumns);
  const Variant name(table);
  query.Bind(0, name);
  std::vector<std::pair<std::string, std::vector<std::string>>> indexes;
  while (query.Step()) {
    const std::string index = query.Value(0).ToText();
    if (indexes.empty() || indexes.back().first != index) indexes.push_back({index, {}});
    indexes.back().second.push_back(query.Value(1).ToText());  // "" for an expression
  }
  for (const auto& [index, columns] : indexes) {
    const auto isRequired = [&](const std::string& column) { return required.contains(column); };
    if (std::all_of(columns.begin(), columns.end(), isRequired)) return columns;
  }
  return {};
}

std::string SqliteDriverSession::QuoteIdentifier(const std::string& name) const {
  std::string quoted = "\"";
  for (const char c : name) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

std::string SqliteDriverSession::Catalog() { return catalog_; }

void SqliteDriverSession::SelectCatalog(const std::string& name) {
  if (handle_ && name == catalog_) return;
  if (!isFolder_) {
    throw Error(errors::kProviderUnspecified, "SQLite",
                "The default database cannot be \"" + name + "\": Data Source is the single file " + source_.string() +
                    ", whose database is \"" + catalog_ + "\". Name that one, or a folder as Data Source.")
        .With("file", source_.string());
  }
  transaction_.RequireNone("The default database cannot be changed");
  Handle opened = OpenFile(source_ / FileName(name));
  transactionStatements_.clear();
  handle_ = std::move(opened);
  catalog_ = name;
}

void SqliteDriverSession::Timeout(std::chrono::seconds limit) { deadline_.Limit(limit); }

void SqliteDriverSession::Begin() {
  transaction_.RequireNone("A transaction cannot begin");
  Run("begin immediate");
  transaction_.Opened();
}

void SqliteDriverSession::Rollback() {
  transaction_.RequireKnown();
  try {
    if (HoldsTransaction()) Run("rollback");
  } catch (...) {
    transaction_.Lose();
    throw;
  }
  transaction_.Ended();
}

// Outside a transaction every row is committed as it is written.
void SqliteDriverSession::Commit() {
  transaction_.RequireKnown();
  if (HoldsTransaction()) {
    Run("commit");
  } else if (transaction_.IsOpen()) {
    throw Error(errors::kProviderUnspecified, "SQLite",
                "The database rolled the transaction back; nothing of it is saved.");
  }
  transaction_.Ended();
}

bool SqliteDriverSession::HoldsTransaction() const { return handle_ && sqlite3_get_autocommit(handle_.get()) == 0; }

// Other programs poll for the file's only lock, so there must be gaps. With 16 statements the commit adds little to the
// cost of each.
GroupLimits SqliteDriverSession::Grouping() { return {16, std::chrono::milliseconds(5)}; }

void SqliteDriverSession::Close() {
  if (HoldsTransaction()) transaction_.Opened();
  transactionStatements_.clear();
  handle_.reset();
  transaction_.RequireNone("The database was closed, and rows were lost,");
}

sqlite3* SqliteDriverSession::Selected() const {
  if (handle_) return handle_.get();
  throw Error(errors::kProviderUnspecified, "SQLite",
              "No database is selected: Data Source is the folder " + source_.string() +
                  ", so the default database must be named.")
      .With("file", source_.string());
}

void SqliteDriverSession::Run(const char* transactionStatement) {
  std::unique_ptr<DriverStatement>& statement = transactionStatements_[transactionStatement];
  if (!statement) statement = Prepare(transactionStatement);
  Execution(*statement).Run();
}

}  // namespace qmx
