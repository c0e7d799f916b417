// Statements that are given as texts. Texts that differ in their literals only (sql_literals.h) share a prepared one.
//
// The few that were used last are kept. One that is in use serves nobody else. Nothing of this shows but the speed:
// where the database refuses what a shared statement asks for, the text runs as it stands, and what becomes of that is
// what the caller sees.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/database_driver.h"
#include "platform/sql_literals.h"

namespace qmx {

class PreparedStatements {
 public:
  explicit PreparedStatements(DriverSession& session);  // borrowed
  void Clear() { kept_.clear(); }

 private:
  friend class TextStatement;
  static constexpr std::size_t kMostKept = 16;

  struct Kept {
    StatementShape shape;
    std::unique_ptr<DriverStatement> statement;
  };

  std::unique_ptr<DriverStatement> Take(const StatementShape& shape);
  void Keep(StatementShape shape, std::unique_ptr<DriverStatement> statement) noexcept;

  DriverSession& session_;
  std::vector<Kept> kept_;  // the one that was used last stands last
};

// One text, prepared to be run once.
class TextStatement {
 public:
  TextStatement(PreparedStatements& prepared, const std::string& text);  // both borrowed
  ~TextStatement();
  TextStatement(const TextStatement&) = delete;
  TextStatement& operator=(const TextStatement&) = delete;

  // Of the result, empty when there is none. They may be others after the first step: the database may have changed
  // since somebody else's statement of that shape was prepared.
  const std::vector<ColumnDescription>& Columns();
  bool Step();  // true while a row stands ready
  Variant Value(std::size_t column) { return statement_->Value(column); }
  std::int64_t RowsAffected() const { return statement_->RowsAffected(); }

 private:
  template <typename Use>
  decltype(auto) OrAsItStands(Use&& use);

  PreparedStatements& prepared_;
  const std::string& text_;
  StatementShape shape_;
  std::unique_ptr<DriverStatement> statement_;
  bool isShared_ = false;  // and nothing went wrong so far
  bool hasRow_ = false;
};

}  // namespace qmx
