// Prepared statements that are shared by the texts of one shape (sql_text.h).
//
// Keeps the few that were used last. One that is in use serves no other text. Sharing changes the speed only: if the
// database refuses the shared form, the text itself is sent, and the caller gets its outcome. Within a unit of work the
// first execution of a shape has a savepoint, because some systems refuse everything after a refused statement.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/database_driver.h"
#include "platform/savepoint.h"
#include "platform/sql_text.h"
#include "platform/unit_of_work.h"

namespace qmx {

class PreparedStatements {
 public:
  PreparedStatements(DriverSession& session, UnitOfWork& unit);  // borrowed
  void Clear() { kept_.clear(); }

 private:
  friend class ConnectionStatement;
  static constexpr std::size_t kMostKept = 16;

  struct Prepared {
    SqlShape shape;
    std::unique_ptr<DriverStatement> statement;
    std::optional<std::string> table;  // the table whose rows it returns one by one with all columns
  };

  std::unique_ptr<Prepared> Take(const SqlShape& shape);  // null if none is kept
  void Keep(std::unique_ptr<Prepared> prepared) noexcept;

  DriverSession& session_;
  UnitOfWork& unit_;
  std::vector<std::unique_ptr<Prepared>> kept_;  // the last used one is last
};

// A statement of an open connection: one text, to be run once.
class ConnectionStatement {
 public:
  // Both are borrowed. Raises the command error for a text that does not hold one statement. With mayWait nobody needs
  // the outcome: the row that it inserts may be sent later, and is lost if it is refused then. It waits only if the
  // database has accepted the shared form before.
  ConnectionStatement(PreparedStatements& statements, const SqlText& text, bool mayWait = false);
  ~ConnectionStatement();
  ConnectionStatement(const ConnectionStatement&) = delete;
  ConnectionStatement& operator=(const ConnectionStatement&) = delete;

  // The columns of the result, empty when there is none. They may change at the first step, because the database may
  // have changed since another text of that shape was prepared.
  const std::vector<ColumnDescription>& Columns();
  bool Step();  // returns whether there is a row
  void ReadRow(std::span<Variant> row) { prepared_->statement->ReadRow(row); }
  std::int64_t RowsAffected() const { return prepared_->statement->RowsAffected(); }

  // The table whose rows it returns one by one with all columns (sql_statement.h).
  const std::optional<std::string>& TableOfRows() const { return prepared_->table; }

 private:
  using Prepared = PreparedStatements::Prepared;

  void Prepare(SqlShape shape, const std::string& text);
  void PrepareAsItStands();
  std::optional<std::string> FormFor(const DriverSession& session) const;  // that is shared
  void BindValues();
  const Variant& InFullForm(const Variant& text);
  template <typename Use>
  decltype(auto) OrAsItStands(Use&& use);

  PreparedStatements& statements_;
  const SqlText& text_;
  bool mayWait_;
  std::vector<Variant> moments_;  // that are bound; reserved, so that they stay where they are
  std::unique_ptr<Prepared> prepared_;
  std::optional<Savepoint> savepoint_;  // to return to if the shared form is refused
  bool isShared_ = false;               // and nothing went wrong so far
  bool hasRow_ = false;
};

}  // namespace qmx
