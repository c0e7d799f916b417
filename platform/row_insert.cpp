#include <algorithm>
#include <bit>
#include <map>

#include "platform/database_driver.h"
#include "platform/execution.h"

namespace qmx {
namespace {

constexpr std::size_t kMostParameters = 30000;  // every system takes at least 32766

// Sends as many rows as the largest statement takes, then half as many, down to one, so that few statements have to be
// prepared.
class RowsOfValues : public DriverRows {
 public:
  RowsOfValues(DriverSession& session, const RowInsert& insert, std::size_t most)
      : session_(session),
        insert_(insert),
        most_(std::bit_floor(std::clamp<std::size_t>(kMostParameters / insert.columns.size(), 1, most))) {}

  std::size_t Most() const override { return most_; }

  std::size_t Add(std::span<const Variant> values) override {
    const std::size_t columns = insert_.columns.size();
    const std::size_t rows = std::bit_floor(std::min(values.size() / columns, most_));
    DriverStatement& statement = StatementFor(rows);
    Execution execution(statement);
    for (std::size_t parameter = 0; parameter < rows * columns; ++parameter) {
      statement.Bind(parameter, values[parameter]);
    }
    execution.Run();
    return rows;
  }

 private:
  DriverStatement& StatementFor(std::size_t rows) {
    auto& statement = statements_[rows];
    if (!statement) statement = session_.Prepare(insert_.Text(rows));
    return *statement;
  }

  DriverSession& session_;
  RowInsert insert_;
  std::size_t most_;
  std::map<std::size_t, std::unique_ptr<DriverStatement>> statements_;  // by their rows
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

std::unique_ptr<DriverRows> RowsInValues(DriverSession& session, const RowInsert& insert, std::size_t most) {
  return std::make_unique<RowsOfValues>(session, insert, most);
}

}  // namespace qmx
