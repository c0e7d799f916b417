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
  Variant::Kind type = Variant::Kind::Empty;  // Empty: values are kept as they come
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
  virtual bool Step() = 0;                                             // true while a row stands ready
  virtual Variant Value(std::size_t column) = 0;  // of that row, in the column's type where the value has that form
  virtual std::int64_t RowsAffected() const = 0;  // by the last execution
  virtual void Reset() noexcept = 0;              // ready to be bound and executed again

  // Binds the row's values that are not Empty, in their order, and returns their number.
  virtual std::size_t BindRow(std::span<const Variant> row) {
    std::size_t parameter = 0;
    for (const Variant& value : row) {
      if (!value.IsEmpty()) Bind(parameter++, value);
    }
    return parameter;
  }

  // Reads a value into every element of the row, one for each of the first columns.
  virtual void ReadRow(std::span<Variant> row) {
    for (std::size_t column = 0; column < row.size(); ++column) row[column] = Value(column);
  }

  // For a statement that adds a row: the next execution may be postponed. The row is then sent before the session does
  // anything else, and the session's next call raises its error.
  virtual void MayWait() noexcept {}
};

// The columns that added rows have.
struct RowInsert {
  std::string table;                       // as the database spells it
  std::vector<ColumnDescription> columns;  // at least one; values are null or of the column's type
  std::string into;                        // "insert into T (A,B)"
  bool isUnheeded = false;                 // a row that waited is lost if it is refused, without an error
  std::function<void(Error&, std::span<const Variant>)> describe;  // adds what is known of a row that was refused

  std::string Text(std::size_t rows = 1) const;  // with a parameter for each value of so many rows
};

// Adds rows, many at a time.
class DriverRows {
 public:
  virtual ~DriverRows() = default;
  virtual std::size_t Most() const = 0;  // rows at a time; more would not be faster

  // Adds as many of the rows as possible at once, beginning with the first, and returns their number. Adds all of these
  // or, if it raises, none. `values` holds the values of at least one row, row by row.
  virtual std::size_t Add(std::span<const Variant> values) = 0;
};

// How many statements that write may be committed together, and for how long.
struct GroupLimits {
  std::size_t statements = 0;  // 0 for no groups
  std::chrono::milliseconds time{0};
};

class DriverSession;

// Adds rows in the form that all database systems know: "insert into T (A,B) values (?,?),(?,?)".
std::unique_ptr<DriverRows> RowsInValues(DriverSession& session, const RowInsert& insert, std::size_t most = 128);

class DriverSession {
 public:
  virtual ~DriverSession() = default;
  virtual std::unique_ptr<DriverStatement> Prepare(const std::string& statement) = 0;  // "?" marks a parameter
  virtual std::unique_ptr<DriverStatement> PrepareInsert(const RowInsert& insert) { return Prepare(insert.Text()); }
  virtual std::string IntegerParameter() const { return "?"; }  // one that is an integer beside whatever it stands
  virtual std::unique_ptr<DriverRows> PrepareRows(const RowInsert& insert) { return RowsInValues(*this, insert); }
  virtual TableDescription Describe(const std::string& table) = 0;  // -2147217865 when there is none
  virtual std::string QuoteIdentifier(const std::string& name) const = 0;
  virtual std::string System() const = 0;  // the database system's name: "SQLite", "PostgreSQL", "MariaDB", ...
  virtual bool KeepsMomentsAsTexts() const { return false; }  // in the full form (datetime.h)
  virtual std::string Catalog() = 0;
  virtual void SelectCatalog(const std::string& name) = 0;
  virtual void Timeout(std::chrono::seconds limit) = 0;  // for every statement from now on; 0 waits forever

  // A transaction, one at a time. When Commit raises, Rollback decides: it returns only if nothing since Begin is
  // saved. When Rollback raises, that is not known, and every further call raises.
  virtual void Begin() = 0;     // what was written before is the database's; what follows can be taken back
  virtual void Rollback() = 0;  // takes back what was written since Begin
  virtual void Commit() = 0;    // what was written is the database's from here on, Begin or not
  virtual void Close() = 0;     // once; statements are gone by then; raises if a transaction is open

  // Makes savepoints work (savepoint.h), where a driver ends or divides transactions by itself unless told otherwise.
  // May connect anew, so statements must be gone. Raises 3219 if a transaction is open.
  virtual void EnableSavepoints() {}

  // Whether Rollback takes back what was written to this table. True for a table that does not exist.
  virtual bool CanRollBack(const std::string& /*table*/) { return true; }

  // Whether a transaction that writes keeps all others from writing anything.
  virtual bool LocksWholeDatabase() const { return false; }

  // Within a transaction. None if a rollback does not undo everything.
  virtual GroupLimits Grouping() { return {}; }

  // Runs the work, and again if the database took it back wholly and asks to try it again, until the statement's
  // time-out has passed. The work reads, or writes in a transaction that it rolls back itself if it fails.
  virtual void Retry(const std::function<void()>& work) { work(); }
  virtual std::int64_t Retries() const { return 0; }  // how often this session tried something again

  // Whether several statements may be committed together from now on, within the limits of Grouping. Such a session
  // never rolls back a saved row, commits before it raises an error, and between calls holds no lock for more than
  // 50 ms. False commits the open group. Until then nobody else writes the rows that the session reads, so in a cluster
  // its reads need not wait for what was committed on other nodes.
  virtual void MayGroup(bool) {}
};

// How a column is compared with a moment that is bound twice, if the database keeps moments as texts: older releases
// stored midnights without a time of day, "2026-11-05".
inline constexpr const char* kIsMomentInEitherForm = " in (?,replace(?,' 00:00:00',''))";

class Driver {
 public:
  virtual ~Driver() = default;
  virtual std::string Form() const = 0;  // of its connection texts, for the error about any other text
  virtual bool Serves(const ConnectionText& text) const = 0;
  virtual std::unique_ptr<DriverSession> Open(const ConnectionText& text) = 0;
};

}  // namespace qmx
