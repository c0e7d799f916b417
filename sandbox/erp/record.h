// One record of a table: a getter for each column, and getClass.
//
// A record has its own copy of its values, so it does not change when its enumeration moves on. A column that was never
// filled is blank, as in the ERP: "", 0, day zero (1899-12-30), no date. A record with only its key filled names
// another record: the audit reader calls it a tuple.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "binding/object.h"
#include "erp/date.h"
#include "erp/sqlite.h"
#include "erp/table.h"

namespace orvan {

class Record : public Object {
 public:
  // The type that all records of a table share. Its members are the columns' getters, in their order, then getClass.
  static const Type& TypeOf(const Table& table);

  explicit Record(const Table& table) : Object(TypeOf(table)), table_(table), cells_(table.columns.size()) {}

  // Returns the object as a record of that table. `what` names it in the error.
  static Record& Of(const Table& table, Argument argument, const char* what);

  const Table& RecordTable() const { return table_; }

  // Replaces all values by those of a row, which has the table's columns in their order.
  void Fill(const Statement& row);

  // Takes one column's value.
  void Fill(std::size_t column, RowValue value);

  // Copies the key of another record, and binds it to parameters 1, 2, ...
  void FillKey(const Record& other);
  void BindKey(Statement& statement) const;

  void Invoke(std::int32_t member, Arguments arguments, Result result) override;

 private:
  enum class Kind : std::uint8_t { Empty, Null, Whole, Number, Text };
  struct Cell {
    Kind kind = Kind::Empty;
    std::int32_t whole = 0;
    double number = 0;
    std::uint32_t start = 0;  // the text's place in texts_
    std::uint32_t length = 0;
  };

  std::string_view TextOf(const Cell& cell) const { return {texts_.data() + cell.start, cell.length}; }
  void SetText(Cell& cell, std::string_view text);
  void FillCell(Cell& cell, RowValue value);
  Moment DateOf(std::size_t column) const;
  // Not inlined, so that the most used getters stay short.
  [[gnu::noinline]] void InvokeOther(std::int32_t member, Arguments arguments, Result result);
  void GetBlank(ColumnType type, Result result);
  void GiveDate(const std::optional<Moment>& moment, Result result);

  const Table& table_;
  std::vector<Cell> cells_;
  std::string texts_;  // all texts of the record, one after the other
  Ref<Date> date_;     // the last one, used again unless it was kept
};

}  // namespace orvan
