// Texts with random values for the table t, some of which a database refuses, and what comes of a text.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/database_driver.h"
#include "platform/error.h"
#include "platform/row_layout.h"
#include "platform/sql_text.h"

namespace qmx::test {

// Writes texts, all of which pass the check.
class TextWriter {
 public:
  using Choices = std::function<std::uint32_t()>;  // never the same number for ever, or no text comes to an end

  explicit TextWriter(Choices choices) : choices_(std::move(choices)) {}
  SqlText Text();

 private:
  using Pieces = std::vector<std::string>;

  std::size_t Number(std::size_t below) { return choices_() % below; }
  bool Chance(unsigned percent) { return Number(100) < percent; }
  const std::string& One(const Pieces& pieces);  // the first ones are the common ones

  std::string TextOfAnyLength();
  Variant Whole();
  Variant AnyNumber();
  Variant Moment();
  Variant Any();
  void PutValue(SqlText& text);
  void PutCondition(SqlText& text);
  SqlText Query();
  SqlText Insert();

  Choices choices_;
};

// What came of a text, for comparison and to be read.
template <typename Statement>
std::string Outcome(Statement&& statement) {
  const std::vector<ColumnDescription> before = statement.Columns();
  std::vector<std::string> rows;
  while (statement.Step()) {
    std::string row;
    Row values(statement.Columns().size());
    statement.ReadRow(values);
    for (const Variant& value : values) {
      row += "|" + std::to_string(static_cast<int>(value.GetKind())) + ":" + (value.IsNull() ? "null" : value.ToText());
    }
    rows.push_back(row);
  }
  std::sort(rows.begin(), rows.end());
  std::string outcome = std::to_string(statement.RowsAffected()) + " affected";
  for (const ColumnDescription& column : before) outcome += " " + column.name;
  for (const std::string& row : rows) outcome += row + "\n";
  return outcome;
}

template <typename Work>
std::string OutcomeOf(Work&& work) {
  try {
    return work();
  } catch (const Error& error) {
    return "error " + std::to_string(error.Number());
  }
}

// The columns of t, where systems differ in their types, and its rows.
struct TypesOfT {
  std::string moment, longText, plain, oddName;
};
inline const TypesOfT kTypesOfSqlite = {"datetime", "text", "", "numeric"};
std::string CreateT(const TypesOfT& types);
inline constexpr const char* kFillT =
    "insert into t (code,n,s,w,d,plain,\"odd name\") values "
    "('A1',5,5,5,'2026-01-31 00:00:00','5',5),('A2',-5,0,0.5,'2026-01-31 08:30:00','A1',0.5),"
    "('a1',0,1,1e10,null,'O''Neil',1),('O''Neil',2147483647,null,-5,'2026-02-01 00:00:00','',-5),"
    "('',null,-5,null,null,null,null)";

}  // namespace qmx::test
