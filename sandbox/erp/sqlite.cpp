#include "erp/sqlite.h"

#include <filesystem>

#include "binding/failure.h"

namespace orvan {
namespace {

constexpr char kSource[] = "OrvanSandbox";
constexpr int kBusyMilliseconds = 30000;
constexpr std::size_t kMostKept = 8;

void RequireFile(const std::string& path) {
  std::error_code ignored;
  if (std::filesystem::is_regular_file(path, ignored)) return;
  throw Failure(kFileNotFound, kSource,
                "There is no sandbox file \"" + path +
                    "\". Check the path in the business component, or make the file with: orvan-sandbox make " + path);
}

}  // namespace

std::shared_ptr<Database> Database::OpenToRead(const std::string& path) {
  RequireFile(path);
  return std::shared_ptr<Database>(new Database(path, SQLITE_OPEN_READONLY));
}

std::shared_ptr<Database> Database::OpenToWrite(const std::string& path) {
  RequireFile(path);
  return std::shared_ptr<Database>(new Database(path, SQLITE_OPEN_READWRITE));
}

std::shared_ptr<Database> Database::Create(const std::string& path) {
  return std::shared_ptr<Database>(new Database(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE));
}

Database::Database(const std::string& path, int flags) : path_(path) {
  kept_.reserve(kMostKept);  // a statement is kept by a destructor, which must not fail
  sqlite3* handle = nullptr;
  const int opened = sqlite3_open_v2(path.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  handle_.reset(handle);
  // Opening reads nothing. Only a first query tells a database from another file.
  if (opened == SQLITE_OK) {
    sqlite3_busy_timeout(handle, kBusyMilliseconds);
    if (sqlite3_exec(handle, "PRAGMA schema_version", nullptr, nullptr, nullptr) == SQLITE_OK) return;
  }
  const std::string file = "file \"" + path + "\" cannot be ";
  const std::string why = std::string(": ") + sqlite3_errmsg(handle) + ". Check that ";
  if (flags & SQLITE_OPEN_CREATE)
    throw Failure(kFileUnusable, kSource, "The " + file + "made" + why + "its folder exists and may be written.");
  throw Failure(kFileUnusable, kSource,
                "The sandbox " + file + "used" + why + "it was made by orvan-sandbox and that this user may read it.");
}

void Database::Execute(const std::string& sql) {
  if (sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) Fail(sql);
}

bool Database::HasTable(std::string_view name) {
  sqlite3_stmt* found = nullptr;
  const std::string sql = "SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = '" + std::string(name) + "'";
  if (sqlite3_prepare_v2(handle_.get(), sql.c_str(), -1, &found, nullptr) != SQLITE_OK) Fail(sql);
  const bool result = sqlite3_step(found) == SQLITE_ROW;
  sqlite3_finalize(found);
  return result;
}

void Database::Fail(const std::string& during) const {
  throw Failure(kDatabaseFailed, kSource,
                "The sandbox file \"" + path_ + "\" failed: " + sqlite3_errmsg(handle_.get()) + ", during: " + during);
}

sqlite3_stmt* Database::Take(const std::string& sql) {
  for (auto& kept : kept_) {
    if (sqlite3_sql(kept.get()) != sql) continue;
    std::swap(kept, kept_.back());
    sqlite3_stmt* const statement = kept_.back().release();
    kept_.pop_back();
    return statement;
  }
  sqlite3_stmt* statement = nullptr;
  const int prepared = sqlite3_prepare_v3(handle_.get(), sql.c_str(), static_cast<int>(sql.size()),
                                          SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  if (prepared != SQLITE_OK) Fail(sql);
  return statement;
}

void Database::Keep(sqlite3_stmt* statement) {
  sqlite3_reset(statement);
  sqlite3_clear_bindings(statement);
  if (kept_.size() == kMostKept) kept_.erase(kept_.begin());
  kept_.emplace_back(statement);
}

Statement::Statement(std::shared_ptr<Database> database, const std::string& sql)
    : database_(std::move(database)), statement_(database_->Take(sql), Keeper{database_.get()}) {}

void Statement::Check(int code) const {
  if (code != SQLITE_OK) database_->Fail(sqlite3_sql(statement_.get()));
}

void Statement::Bind(int parameter, std::string_view text) {
  // An empty view may have no data, and no data would mean null.
  const char* data = text.empty() ? "" : text.data();
  Check(sqlite3_bind_text(statement_.get(), parameter, data, static_cast<int>(text.size()), SQLITE_TRANSIENT));
}

void Statement::Bind(int parameter, double number) { Check(sqlite3_bind_double(statement_.get(), parameter, number)); }

void Statement::Bind(int parameter, std::int64_t number) {
  Check(sqlite3_bind_int64(statement_.get(), parameter, number));
}

void Statement::BindNull(int parameter) { Check(sqlite3_bind_null(statement_.get(), parameter)); }

bool Statement::Step() {
  const int code = sqlite3_step(statement_.get());
  if (code != SQLITE_ROW && code != SQLITE_DONE) Check(code);
  return code == SQLITE_ROW;
}

void Statement::Reset() { sqlite3_reset(statement_.get()); }

void Statement::Run() {
  while (Step()) {
  }
  Reset();
}

std::string Quoted(std::string_view name) { return '"' + std::string(name) + '"'; }

}  // namespace orvan
