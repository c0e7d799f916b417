// The narrow interface between the record-set layer and one database system.
//
// A driver says what a database can do, not what a record set means. It raises Error with the classic numbers (error.h)
// and the database's own message; the layer above adds table, column and key. Statements and sessions are destroyed
// quietly. Parameters and columns count from 0. Texts are UTF-8.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/connection_text.h"
#include "platform/variant.h"

namespace qmx {

class Error;

struct ColumnDescription {
  std::string name;
  Variant::Kind type = Variant::Kind::Empty;  // Empty: values keep the type that they come in
};

struct TableDescription {
  std::string name;  // as the database spells it
  std::vector<ColumnDescription> columns;
  std::vector<std::size_t> key;  // indexes of the key's columns; empty when the table has none
};

class DriverStatement {
 public:
  virtual ~DriverStatement() = default;
  virtual const std::vector<ColumnDescription>& Columns() const = 0;   // of the result; empty when there is none
  virtual void Bind(std::size_t parameter, const Variant& value) = 0;  // borrowed until Reset; raises 13 for an object
  virtual bool Step() = 0;                                             // returns whether there is a row
  virtual Variant Value(std::size_t column) = 0;  // of that row, in the column's type if the value has that form
  virtual std::int64_t RowsAffected() const = 0;  // by the last execution
  virtual void Reset() noexcept = 0;              // ready to be bound and executed again

  // For a statement that adds a row: the session may postpone the next execution. It sends the row before it does
  // anything else, and its next call raises the error of that row, if any.
  virtual void MayWait() noexcept {}
};

// An insert of rows into some columns of a table.
struct RowInsert {
  std::string table;                       // as the database spells it
  std::vector<ColumnDescription> columns;  // at least one; values are null or of the column's type
  std::string into;                        // "insert into T (A,B)"
  std::function<void(Error&, std::span<const Variant>)> describe;  // adds the details of a refused row

  std::string Text(std::size_t rows = 1) const;  // with a parameter for each value of that many rows
};

// Adds rows, many at a time.
class DriverRows {
 public:
  virtual ~DriverRows() = default;
  virtual std::size_t Most() const = 0;  // more rows at a time are no faster

  // Adds the first rows, as many as one statement takes, and returns how many it added. When it raises, it has added
  // none. `values` holds at least one row, and whole rows only.
  virtual std::size_t Add(std::span<const Variant> values) = 0;
};

// How many writing statements may be committed together, and for how long they may wait.
struct GroupLimits {
  std::size_t statements = 0;  // 0: none may
  std::chrono::milliseconds time{0};
};

class DriverSession;

// Adds rows in the form that every database system knows: "insert into T (A,B) values (?,?),(?,?)".
std::unique_ptr<DriverRows> RowsInValues(DriverSession& session, const RowInsert& insert, std::size_t most = 128);

class DriverSession {
 public:
  virtual ~DriverSession() = default;
  virtual std::unique_ptr<DriverStatement> Prepare(const std::string& statement) = 0;  // "?" marks a parameter
  virtual std::unique_ptr<DriverStatement> PrepareInsert(const RowInsert& insert) { return Prepare(insert.Text()); }
  virtual std::string IntegerParameter() const { return "?"; }  // always an integer, whatever it is compared with
  virtual std::unique_ptr<DriverRows> PrepareRows(const RowInsert& insert) { return RowsInValues(*this, insert); }
  virtual TableDescription Describe(const std::string& table) = 0;  // -2147217865 when there is none
  virtual std::string QuoteIdentifier(const std::string& name) const = 0;
  virtual std::string System() const = 0;  // the database system's name: "SQLite", "PostgreSQL", "MariaDB", ...
  virtual bool KeepsMomentsAsTexts() const { return false; }  // in the full form (datetime.h)
  virtual std::string Catalog() = 0;
  virtual void SelectCatalog(const std::string& name) = 0;
  virtual void Timeout(std::chrono::seconds limit) = 0;  // for every statement from now on; 0 waits forever

  // One transaction at a time. After a Commit that raised, call Rollback: it returns only if nothing since Begin is
  // saved. When Rollback raises, the outcome is unknown, and every further call raises.
  virtual void Begin() = 0;     // commits what was written before
  virtual void Rollback() = 0;  // rolls back what was written since Begin
  virtual void Commit() = 0;    // with or without Begin
  virtual void Close() = 0;     // called once, after its statements are destroyed; raises if a transaction is open

  // The limits between Begin and Commit. No grouping if a rollback does not undo everything.
  virtual GroupLimits Grouping() { return {}; }

  // Allows or forbids the session to commit statements in groups, within the limits of Grouping. A session that groups
  // never loses a saved row, commits before it raises an error, and holds no lock for more than 50 ms while nobody
  // calls. MayGroup(false) commits the open group.
  virtual void MayGroup(bool) {}
};

// How a column is compared with a moment that is bound twice, if the database keeps moments as texts: older releases
// stored midnights without a time of day, "2026-11-05".
inline constexpr const char* kIsMomentInEitherForm = " in (?,replace(?,' 00:00:00',''))";

class Driver {
 public:
  virtual ~Driver() = default;
  virtual std::string Form() const = 0;  // of the connection texts that it serves, for error messages
  virtual bool Serves(const ConnectionText& text) const = 0;
  virtual std::unique_ptr<DriverSession> Open(const ConnectionText& text) = 0;
};

}  // namespace qmx
