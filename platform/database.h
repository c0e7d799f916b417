// The local database: connections and record sets.
//
// The rules of a record set (keyset cursor, optimistic locking) are implemented once, above the narrow driver interface
// of database_driver.h. Every database system behaves the same.
//
// - Open on an open record set is 3705; any use of a closed one but State and Open is 3704; whatever needs a closed
//   connection is 3709. Rows that were read stay readable. Closing the connection drops what is pending.
// - After Open, BOF and Eof are both true exactly when there is no row; otherwise the first row is current. recordcount
//   is exact and counts saved rows.
// - A record set opened on a table's name reads no row until something asks for one; the rows that it adds are not
//   kept.
// - AddNew first saves a pending row, then starts a new one, which becomes the current row. Update saves; with nothing
//   pending it does nothing; MoveFirst and MoveNext save first. Assigned columns alone are inserted. An update writes
//   the columns whose value differs, by the row's key (primary key, else the best row identifier, else all columns),
//   and must hit exactly one row, else it is -2147217864 and nothing is changed.
// - A row that could not be saved stays pending: CancelUpdate drops it and makes the row before it current again.
// - Close saves a pending new row and drops a pending edit. When that fails, the error is raised and the record set is
//   closed all the same, without that row. A record set that is destroyed while open drops both.
// - A query that does not show one table's rows whole ("select * from T ...") gives rows that are read-only: AddNew and
//   assigning are 3219.
// - Column names compare without regard to case. A value is converted to its column's type when it is assigned (empty
//   becomes null); what cannot be converted fails there. A column that was never assigned reads as null in a new row,
//   and as what the database holds once the row is saved. Errors carry table, column, key and statement as details.
// - One statement per text. A text that a value broke (sql_text.h) is refused before it reaches the database.
// - Rows are saved one by one as seen by the program: no error takes back a row that was saved before.
//
// "EOF" is a macro of the C library, hence Eof. Connections and record sets belong to one thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database_driver.h"
#include "platform/database_observers.h"
#include "platform/sql_text.h"
#include "platform/variant.h"

namespace qmx {

class OpenConnection;
class Recordset;
class RecordsetCursor;

inline constexpr int kCursorKeyset = 1;
inline constexpr int kLockOptimistic = 3;
inline constexpr int kCommandText = 1;
inline constexpr int kCommandTable = 2;
inline constexpr int kStateClosed = 0;
inline constexpr int kStateOpen = 1;

// A column's name, which remembers where it was last found. As a constant at the place of use it is looked up once and
// not once per row. The text is borrowed: a literal, or one that outlives the call.
class Column {
 public:
  Column(const char* name) : name_(name) {}
  Column(std::string_view name) : name_(name) {}
  std::string_view Name() const { return name_; }

 private:
  friend class Recordset;
  std::string_view name_;
  mutable std::uint64_t layout_ = 0;  // the row layout in which it was found; 0 for none
  mutable std::size_t index_ = 0;
};

class Connection {
 public:
  Connection(const std::vector<Driver*>& drivers, DatabaseObservers observers);  // all borrowed
  ~Connection();                                                                 // closes quietly
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // Raises 5 for a text that cannot be read or that no driver serves, -2147467259 when the database cannot be opened,
  // -2147217843 when it refuses the log-in, and 3705 when the connection is open already. Adds a user and a password
  // that are not empty to the text as UID and PWD.
  void Open(const std::string& connectionText, const std::string& user, const std::string& password);

  std::string defaultdatabase() const;
  void defaultdatabase(const std::string& name);  // 3219 while a record set is open on this connection

  // Runs one statement and returns the number of affected rows.
  std::int64_t Execute(const SqlText& statement);

  // Executes a statement whose outcome nobody needs. Within Together the row that it inserts may wait for up to 50 ms,
  // to be sent with others. If the database refuses a row that waited, that row alone is lost and nothing is raised.
  void ExecuteSoon(const SqlText& statement);

  std::string System() const;  // the database system's name

  // Returns a table's columns and key. Raises -2147217865 when there is no such table.
  TableDescription Describe(const std::string& table);

  // Runs the work and may commit its rows in groups: each row is committed within 50 ms, and all rows are when the work
  // returns or raises. Raises what the work raises, or why saved rows are lost.
  void Together(const std::function<void()>& work);

  // Runs the work in one transaction, after PrepareAtomic: what it writes over this connection is committed when it
  // returns, or not at all. The end rolls back and raises if the work raised or if any call on the connection or its
  // record sets failed in it, also one whose error was handled. Groups and waiting rows of the work are not committed
  // before. If the answer to the commit is lost, the error says that the outcome is not known. Raises 3219 within
  // another such work.
  void Atomically(const std::function<void()>& work);

  // Prepares the connection for such work on these tables. Raises 3219 if a rollback would not take back what is
  // written to one of them, and while a record set is open. May connect anew: not every driver's connection has
  // savepoints.
  void PrepareAtomic(const std::vector<std::string>& tables);

  bool LocksWholeDatabase() const;  // whether a transaction that writes keeps other programs from writing anything

  int CommandTimeout() const;  // seconds, 30 by default; 0 waits forever
  void CommandTimeout(int seconds);

  int State() const;
  void Close();  // 3704 when closed

 private:
  friend class Recordset;
  OpenConnection& OpenSession() const;  // 3704 when closed
  std::int64_t Execute(const SqlText& statement, bool mayWait);
  std::vector<Driver*> drivers_;
  DatabaseObservers observers_;
  std::shared_ptr<OpenConnection> session_;  // null when closed; record sets share it
  int timeout_ = 30;
};

// One column of the current row. Lives no longer than its record set.
class Field {
 public:
  Variant Value() const;
  void Value(Variant&& value);  // assigns
  Field& operator=(Variant value) { return Value(std::move(value)), *this; }
  std::string Name() const;

 private:
  friend class Recordset;
  Field(Recordset& owner, std::size_t index) : owner_(owner), index_(index) {}
  Recordset& owner_;
  std::size_t index_;
};

class Recordset {
 public:
  explicit Recordset(DatabaseObservers observers);  // borrowed
  ~Recordset();                                     // drops what is pending
  Recordset(const Recordset&) = delete;
  Recordset& operator=(const Recordset&) = delete;

  // `source` is a statement (options 1) or a table's name (options 2). Raises 5 for a cursor type other than 1 and a
  // lock type other than 3.
  void Open(const SqlText& source, Connection& connection, int cursorType, int lockType, int options);
  void Open(const SqlText& source, int cursorType, int lockType, int options);  // on the active connection

  void ActiveConnection(Connection& connection);  // borrowed; 3705 while the record set is open
  Connection* ActiveConnection() const;

  std::int32_t recordcount();
  bool BOF();
  bool Eof();
  void MoveFirst();  // 3021 when there is no row
  void MoveNext();   // 3021 past the end

  Field Fields(const Column& column);  // 3265 when there is no such column
  Field Fields(std::size_t index);     // from 0

  void AddNew();
  void Update();
  void CancelUpdate();

  int State() const;
  void Close();

 private:
  friend class Field;
  RecordsetCursor& OpenCursor() const;  // 3704 when closed
  void Assign(std::size_t index, Variant&& value);
  void AssignAndTell(std::size_t index, Variant&& value);
  template <typename Step>
  void Tell(std::string_view operation, Step&& step);
  template <typename Call>
  decltype(auto) Checked(Call&& call) const;
  DatabaseObservers observers_;
  bool columnsAreObserved_;
  int number_;  // for the observers
  Connection* connection_ = nullptr;
  std::shared_ptr<OpenConnection> session_;  // of the last Open; its unit of work learns of failures
  SqlText source_{""};                       // borrowed by the cursor; a member, so that its memory is reused
  std::unique_ptr<RecordsetCursor> cursor_;  // null when closed
};

inline void Field::Value(Variant&& value) { owner_.Assign(index_, std::move(value)); }

// Creates connections and record sets from their ProgIDs, "ADODB.Connection" and "ADODB.Recordset", in any case. Any
// other ProgID is 429.
class Database {
 public:
  explicit Database(std::vector<Driver*> drivers, DatabaseObservers observers = {});  // borrowed
  std::unique_ptr<Connection> CreateConnection(std::string_view progId);
  std::unique_ptr<Recordset> CreateRecordset(std::string_view progId);

 private:
  std::vector<Driver*> drivers_;
  DatabaseObservers observers_;
};

}  // namespace qmx
