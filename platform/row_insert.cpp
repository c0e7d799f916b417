// Adding rows in the form that every database system knows: "insert into T (A,B) values (?,?),(?,?)".
#include <algorithm>
#include <array>
#include <bit>

#include "platform/database_driver.h"

namespace qmx {
namespace {

constexpr std::size_t kSizes = 8;               // statements for 1, 2, 4, ... 128 rows
constexpr std::size_t kMostParameters = 30000;  // the systems take 32766 at least

// Rows go out by halves: as many as the largest statement takes, then half as many, down to one, so that there are few
// statements to prepare.
class RowsOfValues : public DriverRows {
 public:
  RowsOfValues(DriverSession& session, const RowInsert& insert)
      : session_(session),
        insert_(insert),
        most_(std::clamp<std::size_t>(std::bit_floor(kMostParameters / insert.columns.size()), 1, 1u << (kSizes - 1))) {
  }

  std::size_t Most() const override { return most_; }

  std::size_t Add(std::span<const Variant> values) override {
    const std::size_t columns = insert_.columns.size();
    const std::size_t rows = std::bit_floor(std::min(values.size() / columns, most_));
    DriverStatement& statement = StatementFor(rows);
    try {
      for (std::size_t parameter = 0; parameter < rows * columns; ++parameter) {
        statement.Bind(parameter, values[parameter]);
      }
      while (statement.Step()) continue;
    } catch (...) {
      statement.Reset();
      throw;
    }
    statement.Reset();
    return rows;
  }

 private:
  DriverStatement& StatementFor(std::size_t rows) {
    auto& statement = statements_[static_cast<std::size_t>(std::countr_zero(rows))];
    if (!statement) statement = session_.Prepare(insert_.Text(rows));
    return *statement;
  }

  DriverSession& session_;
  RowInsert insert_;
  std::size_t most_;
  std::array<std::unique_ptr<DriverStatement>, kSizes> statements_;
};

}  // namespace

std::string RowInsert::Text(std::size_t rows) const {
  std::string row = "(?";
  for (std::size_t column = 1; column < columns.size(); ++column) row += ",?";
  row += ')';
  std::string text = into + " values " + row;
  for (std::size_t further = 1; further < rows; ++further) text += ',' + row;
  return text;
}

std::unique_ptr<DriverRows> DriverSession::PrepareRows(const RowInsert& insert) {
  return std::make_unique<RowsOfValues>(*this, insert);
}

}  // namespace qmx
