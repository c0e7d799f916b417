#include "platform/odbc/array_rows.h"

#include <sqlext.h>

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "platform/execution.h"
#include "platform/odbc/connection.h"
#include "platform/odbc/driver_manager.h"
#include "platform/odbc/statement.h"

namespace qmx {
namespace {

using Kind = Variant::Kind;

constexpr std::size_t kMostRows = 1000;      // with 500 a copy takes up to a tenth longer, for 2 MiB less
constexpr std::size_t kMostBytes = 4 << 20;  // of all arrays: a long text makes its whole array wide

void Put(const void* value, std::size_t size, std::size_t row, ParameterArray& array) {
  std::memcpy(array.cells.data() + row * array.width, value, size);
  array.lengths[row] = static_cast<SQLLEN>(size);
}

// How texts are sent.
struct Utf8Cells {
  using Character = char;
  static constexpr SQLSMALLINT kCType = SQL_C_CHAR;
  static constexpr SQLSMALLINT kSqlType = SQL_VARCHAR;

  void Put(const std::string& text, std::size_t row, ParameterArray& array) {
    qmx::Put(text.data(), text.size(), row, array);
  }
};
struct WideCells {
  using Character = SQLWCHAR;
  static constexpr SQLSMALLINT kCType = SQL_C_WCHAR;
  static constexpr SQLSMALLINT kSqlType = SQL_WVARCHAR;

  void Put(const std::string& text, std::size_t row, ParameterArray& array) {
    ToWide(text, wide);
    qmx::Put(wide.data(), wide.size() * sizeof(SQLWCHAR), row, array);
  }

  WideText wide{};  // a buffer
};

template <typename Cells>
ParameterArray ArrayFor(Kind kind) {
  switch (kind) {
    case Kind::Boolean:
      return {SQL_C_BIT, SQL_BIT, sizeof(unsigned char)};
    case Kind::UInt8:
    case Kind::Int16:
    case Kind::Int32:
      return {SQL_C_SLONG, SQL_INTEGER, sizeof(SQLINTEGER)};
    case Kind::Double:
      return {SQL_C_DOUBLE, SQL_DOUBLE, sizeof(double)};
    default:  // the length of a date-time's text
      return {Cells::kCType, Cells::kSqlType, 19 * sizeof(typename Cells::Character)};
  }
}

template <typename Cells>
void Put(const Variant& value, Kind kind, std::size_t row, ParameterArray& array, Cells& cells) {
  const auto put = [&](auto number) { Put(&number, sizeof number, row, array); };
  const auto putText = [&](const std::string& text) { cells.Put(text, row, array); };
  if (value.IsEmpty() || value.IsNull()) {
    array.lengths[row] = SQL_NULL_DATA;
  } else if (kind == Kind::Boolean) {
    put(static_cast<unsigned char>(value.ToBoolean()));
  } else if (kind == Kind::Double) {
    put(value.ToDouble());
  } else if (array.cType == SQL_C_SLONG) {
    put(static_cast<SQLINTEGER>(value.ToInt32()));
  } else if (const std::string* text = value.IfText()) {
    putText(*text);
  } else {
    putText(value.ToText());
  }
}

template <typename Cells>
class ArrayRows : public DriverRows {
 public:
  ArrayRows(OdbcConnection& connection, const RowInsert& insert, std::unique_ptr<DriverRows> otherwise)
      : connection_(connection), statement_(connection, insert.Text()), otherwise_(std::move(otherwise)) {
    for (const ColumnDescription& column : insert.columns) {
      kinds_.push_back(column.type);
      arrays_.push_back(ArrayFor<Cells>(column.type));
    }
  }

  std::size_t Most() const override { return isRefused_ ? otherwise_->Most() : kMostRows; }

  std::size_t Add(std::span<const Variant> values) override {
    if (isTrusted_) return AddArrays(values);
    return isRefused_ ? otherwise_->Add(values) : AddOnTrial(values);
  }

 private:
  // If the driver sends the rows one by one, those before a bad one must be rolled back.
  std::size_t AddOnTrial(std::span<const Variant> values) {
    if (connection_.Transaction().IsOpen()) return AddWithinATransaction(values);
    connection_.Begin();
    try {
      const std::size_t rows = AddAndCount(values);
      connection_.Commit();
      return rows;
    } catch (...) {
      connection_.Rollback();
      throw;
    }
  }

  // Only the transaction's owner may roll it back.
  std::size_t AddWithinATransaction(std::span<const Variant> values) {
    connection_.Run("savepoint qmx_trial");
    try {
      return AddAndCount(values);
    } catch (...) {
      connection_.Run("rollback to savepoint qmx_trial");
      throw;
    }
  }

  std::size_t AddAndCount(std::span<const Variant> values) {
    const std::int64_t before = InsertsSent();
    const std::size_t rows = AddArrays(values);
    const bool isOneStatement = InsertsSent() == before + 1;
    isTrusted_ = rows > 1 && isOneStatement;
    isRefused_ = !isOneStatement;
    return rows;
  }

  std::int64_t InsertsSent() {
    return Variant(connection_.AskText("select variable_value from information_schema.session_status"
                                       " where variable_name = 'COM_INSERT'"))
        .ToInt32();
  }

  std::size_t AddArrays(std::span<const Variant> values) {
    const std::size_t rows = RowsThatFit(values);
    for (ParameterArray& array : arrays_) {
      array.cells.resize(rows * array.width);
      array.lengths.resize(rows);
    }
    for (std::size_t row = 0, at = 0; row < rows; ++row) {
      for (std::size_t column = 0; column < arrays_.size(); ++column, ++at) {
        Put(values[at], kinds_[column], row, arrays_[column], cells_);
      }
    }
    for (std::size_t column = 0; column < arrays_.size(); ++column) statement_.BindArray(column, arrays_[column]);
    statement_.ArraySize(rows);
    Execution(statement_).Run();
    return rows;
  }

  // Makes the arrays wide enough for these values.
  std::size_t RowsThatFit(std::span<const Variant> values) {
    const auto excess = [&](std::size_t column, const Variant& value) {
      const std::string* text = value.IfText();
      const std::size_t size = text ? text->size() * sizeof(typename Cells::Character) : 0;  // at most
      return size > arrays_[column].width ? size - arrays_[column].width : 0;
    };
    const std::size_t columns = arrays_.size();
    std::size_t width = 0;
    for (std::size_t column = 0; column < columns; ++column) {
      arrays_[column].width = ArrayFor<Cells>(kinds_[column]).width;
      width += arrays_[column].width;
    }
    std::size_t rows = 0;
    for (; rows < values.size() / columns; ++rows) {
      const auto row = values.subspan(rows * columns, columns);
      std::size_t wider = width;
      for (std::size_t column = 0; column < columns; ++column) wider += excess(column, row[column]);
      if (rows > 0 && wider * (rows + 1) > kMostBytes) break;
      if (wider == width) continue;
      for (std::size_t column = 0; column < columns; ++column) arrays_[column].width += excess(column, row[column]);
      width = wider;
    }
    return rows;
  }

  OdbcConnection& connection_;
  OdbcDriverStatement statement_;
  std::unique_ptr<DriverRows> otherwise_;
  std::vector<Kind> kinds_;
  std::vector<ParameterArray> arrays_;  // their memory is used again
  Cells cells_;
  bool isTrusted_ = false;
  bool isRefused_ = false;
};

}  // namespace

std::unique_ptr<DriverRows> RowsByArrays(OdbcConnection& connection, const RowInsert& insert,
                                         std::unique_ptr<DriverRows> otherwise) {
  const auto isOfAnyType = [](const ColumnDescription& column) { return column.type == Kind::Empty; };
  if (std::any_of(insert.columns.begin(), insert.columns.end(), isOfAnyType)) return otherwise;
  if (!kNarrowTextsAreUnchanged)
    return std::make_unique<ArrayRows<WideCells>>(connection, insert, std::move(otherwise));
  if (!connection.IsUtf8()) return otherwise;
  return std::make_unique<ArrayRows<Utf8Cells>>(connection, insert, std::move(otherwise));
}

}  // namespace qmx
