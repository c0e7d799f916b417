// SQLite for the sandbox: a file, and statements whose rows are read one by one. Errors name the file.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace orvan {

// An error of the file or of SQLite, with a number of the interface.
inline constexpr std::int32_t kDatabaseFailed = -2147467259;

class Database {
 public:
  // A missing file is error 53, an unreadable one or one that is no database is 75.
  static std::shared_ptr<Database> OpenToRead(const std::string& path);
  static std::shared_ptr<Database> OpenToWrite(const std::string& path);
  static std::shared_ptr<Database> Create(const std::string& path);

  const std::string& Path() const { return path_; }
  sqlite3* Handle() const { return handle_.get(); }

  void Execute(const std::string& sql);
  bool HasTable(std::string_view name);

  // Raises SQLite's last error.
  [[noreturn]] void Fail(const std::string& during) const;

 private:
  friend class Statement;

  struct Closer {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
  };
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };

  Database(const std::string& path, int flags);
  sqlite3_stmt* Take(const std::string& sql);
  void Keep(sqlite3_stmt* statement);

  std::string path_;
  std::unique_ptr<sqlite3, Closer> handle_;
  // Keeps a statement for the next use of the same text, so that a repeated listing is prepared once.
  std::vector<std::unique_ptr<sqlite3_stmt, Finalizer>> kept_;
};

// A value of a statement's current row.
class RowValue {
 public:
  explicit RowValue(sqlite3_value* value) : value_(value) {}

  int Kind() const { return sqlite3_value_type(value_); }
  std::int64_t Whole() const { return sqlite3_value_int64(value_); }
  double Number() const { return sqlite3_value_double(value_); }
  std::string_view Text() const {
    const auto* const data = reinterpret_cast<const char*>(sqlite3_value_text(value_));
    return data ? std::string_view(data, static_cast<std::size_t>(sqlite3_value_bytes(value_))) : std::string_view();
  }

 private:
  sqlite3_value* value_;
};

class Statement {
 public:
  Statement(std::shared_ptr<Database> database, const std::string& sql);
  Statement(Statement&&) = default;
  Statement& operator=(Statement&&) = delete;  // the old statement would outlive its database

  // Parameters count from 1. Texts are copied.
  void Bind(int parameter, std::string_view text);
  void Bind(int parameter, double number);
  void Bind(int parameter, std::int64_t number);
  void BindNull(int parameter);

  bool Step();   // whether there is a row
  void Reset();  // ready to run again, with the same parameters until they are bound anew
  void Run();    // to its end, for its effect

  // The current row. Columns count from 0.
  int Columns() const { return sqlite3_column_count(statement_.get()); }
  RowValue At(int column) const { return RowValue(sqlite3_column_value(statement_.get(), column)); }
  std::int64_t Whole(int column) const { return At(column).Whole(); }
  std::string_view Text(int column) const { return At(column).Text(); }

 private:
  void Check(int code) const;

  struct Keeper {
    Database* database = nullptr;
    void operator()(sqlite3_stmt* statement) const { database->Keep(statement); }
  };
  std::shared_ptr<Database> database_;
  std::unique_ptr<sqlite3_stmt, Keeper> statement_;
};

// Returns a name in double quotes, because the ERP has columns named "desc" and "user".
std::string Quoted(std::string_view name);

}  // namespace orvan
