// Told of every call on connections and record sets, in order; absent when nobody listens, so that it costs nothing.
//
// `error` is null when the call succeeded. Connection texts come masked.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/variant.h"

namespace qmx {

class Error;

class DatabaseObserver {
 public:
  virtual ~DatabaseObserver() = default;

  virtual void ConnectionOpened(std::string_view maskedText, const Error* error) = 0;
  virtual void DefaultDatabaseSet(std::string_view value, const Error* error) = 0;
  virtual void Executed(std::string_view statement, std::int64_t affected, const Error* error) = 0;
  virtual void CommandTimeoutSet(int seconds, const Error* error) = 0;
  virtual void ConnectionClosed(const Error* error) = 0;

  // `recordset` is a number given in the order in which the record sets were made. `rows` only where rows were read.
  virtual void RecordsetOpened(int recordset, std::string_view source, int cursorType, int lockType, int options,
                               std::optional<std::int64_t> rows, const Error* error) = 0;
  // Whether it is to be told of columns: rows cost more then. Asked once a record set.
  virtual bool HearsOfColumns() const { return true; }
  virtual void ColumnSet(int recordset, std::string_view column, const Variant& value, const Error* error) = 0;
  virtual void RecordsetCalled(int recordset, std::string_view operation,
                               const Error* error) = 0;  // "AddNew", "Update", ...
  virtual int NextRecordset() = 0;
};

}  // namespace qmx
