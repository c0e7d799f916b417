// Is notified of every call on connections and record sets, in order, and of every saved row.
//
// An observer overrides the notifications that it needs. `error` is null when the call succeeded. Connection texts are
// masked.
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

  virtual void ConnectionOpened(std::string_view /*maskedText*/, const Error*) {}
  virtual void DefaultDatabaseSet(std::string_view /*value*/, const Error*) {}
  // Whether it hears of the outcome of each statement, so that no statement may wait (Connection::ExecuteSoon).
  virtual bool HearsOfStatements() const { return false; }
  virtual void Executing(std::string_view /*statement*/) {}  // before the statement is executed
  virtual void Executed(std::string_view /*statement*/, std::int64_t /*affected*/, const Error*) {}
  virtual void CommandTimeoutSet(int /*seconds*/, const Error*) {}
  // `retries`: how often something was tried again because the database took it back and asked for it.
  virtual void ConnectionClosed(std::int64_t /*retries*/, const Error*) {}

  // Returns a number for the new record set, which later notifications have; 0 if the observer needs none. With several
  // observers, all get the number of the first one.
  virtual int NextRecordset() { return 0; }
  // `rows` has a value only when rows were read.
  virtual void RecordsetOpened(int /*recordset*/, std::string_view /*source*/, int /*cursorType*/, int /*lockType*/,
                               int /*options*/, std::optional<std::int64_t> /*rows*/, const Error*) {}
  virtual void RecordsetCalled(int /*recordset*/, std::string_view /*operation*/, const Error*) {}  // "AddNew", ...

  // A row was saved: a new one, or one with assigned columns, also when no value differed. Comes before the end of the
  // call that saved the row.
  virtual void RowSaved(std::string_view /*table*/) {}

  // Whether it is notified of assigned columns, which makes rows slower. Record sets ask once.
  virtual bool HearsOfColumns() const { return false; }
  virtual void ColumnSet(int /*recordset*/, std::string_view /*column*/, const Variant& /*value*/, const Error*) {}
};

}  // namespace qmx
