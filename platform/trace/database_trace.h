// Writes the calls on connections and record sets into the trace.
#pragma once

#include "platform/database_observer.h"

namespace qmx {

class Trace;

class DatabaseTrace : public DatabaseObserver {
 public:
  explicit DatabaseTrace(Trace& trace) : trace_(trace) {}  // borrowed

  void ConnectionOpened(std::string_view maskedText, const Error* error) override;
  void DefaultDatabaseSet(std::string_view value, const Error* error) override;
  bool HearsOfStatements() const override { return true; }
  void Executed(std::string_view statement, std::int64_t affected, const Error* error) override;
  void CommandTimeoutSet(int seconds, const Error* error) override;
  void ConnectionClosed(std::int64_t retries, const Error* error) override;
  void RecordsetOpened(int recordset, std::string_view source, int cursorType, int lockType, int options,
                       std::optional<std::int64_t> rows, const Error* error) override;
  void ColumnSet(int recordset, std::string_view column, const Variant& value, const Error* error) override;
  void RecordsetCalled(int recordset, std::string_view operation, const Error* error) override;
  int NextRecordset() override { return ++recordsets_; }
  bool HearsOfColumns() const override { return true; }

 private:
  Trace& trace_;
  int recordsets_ = 0;
};

}  // namespace qmx
