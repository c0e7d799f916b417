// SQLite's C interface, with exceptions for failures.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace reference {

class Statement {
 public:
  Statement(sqlite3* file, const std::string& text) : file_(file) {
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(file, text.data(), static_cast<int>(text.size()), &prepared, nullptr) != SQLITE_OK) Fail();
    statement_.reset(prepared);
  }

  sqlite3_stmt* Get() const { return statement_.get(); }
  const char* Text(int column) const {  // null for null
    return reinterpret_cast<const char*>(sqlite3_column_text(Get(), column));
  }
  void Bind(int parameter, const std::string& text) {  // the text stays where it is until the statement has run
    sqlite3_bind_text(Get(), parameter, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
  }

  bool Step() {
    const int code = sqlite3_step(Get());
    if (code != SQLITE_ROW && code != SQLITE_DONE) Fail();
    return code == SQLITE_ROW;
  }
  void Reset() { sqlite3_reset(Get()); }
  void Run() {
    while (Step()) continue;
    Reset();
  }

 private:
  [[noreturn]] void Fail() const { throw std::runtime_error(sqlite3_errmsg(file_)); }

  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  sqlite3* file_;
  std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
};

class File {
 public:
  File(const std::string& path, int flags) {
    sqlite3* opened = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &opened, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    file_.reset(opened);
    if (code != SQLITE_OK) throw std::runtime_error(path + ": " + sqlite3_errmsg(opened));
  }

  Statement Prepare(const std::string& text) const { return {file_.get(), text}; }
  void Execute(const std::string& text) const { Prepare(text).Run(); }

 private:
  struct Closer {
    void operator()(sqlite3* file) const { sqlite3_close_v2(file); }
  };
  std::unique_ptr<sqlite3, Closer> file_;
};

inline File ErpFile(const std::string& path) { return {path, SQLITE_OPEN_READONLY}; }

// With the program's own settings.
inline File LocalFile(const std::string& path) {
  File file(path, SQLITE_OPEN_READWRITE);
  file.Execute("pragma journal_mode=wal");
  file.Execute("pragma synchronous=normal");
  file.Execute("pragma wal_autocheckpoint=16000");
  return file;
}

}  // namespace reference
