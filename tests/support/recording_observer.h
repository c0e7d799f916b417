// Writes what is done to the database into the call log, as readable lines:
//
//   connection.Open                  rs1.Open "tsmdm030" 1 3 2        rs1.AddNew
//   connection.CommandTimeout 150    rs1.cstp = "A"                   rs1.Update
//   connection.Execute DELETE FROM tsmdm030 WHERE 1=1
//
// A call that failed is followed by " -> error NUMBER".
#pragma once

#include "platform/database_observer.h"
#include "platform/error.h"
#include "tests/support/call_log.h"

namespace qmx::test {

class RecordingObserver : public DatabaseObserver {
 public:
  explicit RecordingObserver(CallLog& log) : log_(log) {}

  void ConnectionOpened(std::string_view, const Error* error) override { Add("connection.Open", error); }
  void DefaultDatabaseSet(std::string_view value, const Error* error) override {
    Add("connection.defaultdatabase " + std::string(value), error);
  }
  bool HearsOfStatements() const override { return true; }
  void Executed(std::string_view statement, std::int64_t, const Error* error) override {
    Add("connection.Execute " + std::string(statement), error);
  }
  void CommandTimeoutSet(int seconds, const Error* error) override {
    Add("connection.CommandTimeout " + std::to_string(seconds), error);
  }
  void ConnectionClosed(std::int64_t, const Error* error) override { Add("connection.Close", error); }

  void RecordsetOpened(int recordset, std::string_view source, int cursorType, int lockType, int options,
                       std::optional<std::int64_t>, const Error* error) override {
    Add(Name(recordset) + ".Open \"" + std::string(source) + "\" " + std::to_string(cursorType) + ' ' +
            std::to_string(lockType) + ' ' + std::to_string(options),
        error);
  }
  void ColumnSet(int recordset, std::string_view column, const Variant& value, const Error* error) override {
    Add(Name(recordset) + '.' + std::string(column) + " = " + Show(value), error);
  }
  void RecordsetCalled(int recordset, std::string_view operation, const Error* error) override {
    Add(Name(recordset) + '.' + std::string(operation), error);
  }
  int NextRecordset() override { return ++recordsets_; }
  bool HearsOfColumns() const override { return true; }

 private:
  static std::string Name(int recordset) { return "rs" + std::to_string(recordset); }
  void Add(std::string line, const Error* error) {
    log_.Add(error ? line + " -> error " + std::to_string(error->Number()) : line);
  }

  CallLog& log_;
  int recordsets_ = 0;
};

}  // namespace qmx::test
