#include "platform/odbc/statement.h"

#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/odbc/answers.h"
#include "platform/odbc/types.h"

namespace qmx {
namespace {

using Kind = Variant::Kind;

constexpr const char* kDescribed = "a statement was described";
constexpr const char* kRead = "a value was read";

constexpr std::size_t kFirstPiece = 256;  // characters of a text that are read at once

SQLLEN Bytes(std::size_t characters) { return static_cast<SQLLEN>(characters * sizeof(SQLWCHAR)); }

}  // namespace

OdbcDriverStatement::OdbcDriverStatement(OdbcConnection& connection, const std::string& text)
    : connection_(connection),
      text_(ToWide(text)),
      shownText_(std::make_shared<const std::string>(text)),
      statement_(connection) {
  Prepare();
}

// A statement whose answer was lost may be committed, so nothing is sent again.
template <typename Ask>
auto OdbcDriverStatement::Heard(Ask&& ask) const {
  try {
    return ask();
  } catch (const Error& error) {
    if (IsLoss(error, connection_.SignsOfRefusals())) connection_.Lose();
    throw;
  }
}

void OdbcDriverStatement::Prepare() {
  connection_.Transaction().RequireKnown();
  connection_.WatchStatement(shownText_);
  Heard([&] {
    statement_.Require("a statement was prepared", SQLPrepareW, text_.data(), static_cast<SQLINTEGER>(text_.size()));
  });
  prepared_ = Clock::now();
  columns_.reset();
}

const std::vector<ColumnDescription>& OdbcDriverStatement::Columns() const {
  if (columns_) return *columns_;
  SQLSMALLINT count = 0;
  statement_.Require(kDescribed, SQLNumResultCols, &count);
  std::vector<ColumnDescription> columns;
  for (SQLSMALLINT column = 1; column <= count; ++column) {
    columns.push_back(Describe(static_cast<SQLUSMALLINT>(column)));
  }
  return columns_.emplace(std::move(columns));
}

ColumnDescription OdbcDriverStatement::Describe(SQLUSMALLINT column) const {
  const auto ask = [&](SQLUSMALLINT what) {
    SQLLEN answer = 0;
    statement_.Require(kDescribed, [&](SQLHANDLE statement) {
      return SQLColAttributeW(statement, column, what, nullptr, 0, nullptr, &answer);
    });
    return answer;
  };
  std::array<SQLWCHAR, 256> text{};
  const auto askText = [&](SQLUSMALLINT what) {
    SQLSMALLINT bytes = 0;
    text.fill(0);
    statement_.Require(kDescribed, [&](SQLHANDLE statement) {
      return SQLColAttributeW(statement, column, what, text.data(), sizeof text, &bytes, nullptr);
    });
    return FromWide(text.data());
  };
  const std::string typeName = askText(SQL_DESC_TYPE_NAME);
  return {askText(SQL_DESC_NAME),
          KindOfSqlType(ask(SQL_DESC_CONCISE_TYPE), typeName, ask(SQL_DESC_UNSIGNED) == SQL_TRUE)};
}

inline OdbcDriverStatement::Parameter& OdbcDriverStatement::Place(std::size_t parameter) {
  while (parameters_.size() <= parameter) parameters_.emplace_back();
  return parameters_[parameter];
}

void OdbcDriverStatement::Bind(std::size_t parameter, const Variant& value) {
  Parameter& place = Place(parameter);
  SQLSMALLINT cType = SQL_C_WCHAR;
  SQLSMALLINT sqlType = SQL_WVARCHAR;
  SQLULEN size = 1;
  SQLPOINTER data = nullptr;
  place.indicator = 0;
  switch (value.GetKind()) {
    case Kind::Empty:
    case Kind::Null:
      place.indicator = SQL_NULL_DATA;
      break;
    case Kind::Boolean:
      cType = SQL_C_BIT, sqlType = SQL_BIT, data = &place.bit;
      place.bit = value.ToBoolean() ? 1 : 0;
      break;
    case Kind::UInt8:
    case Kind::Int16:
    case Kind::Int32:
      cType = SQL_C_SLONG, sqlType = SQL_INTEGER, data = &place.integer;
      place.integer = value.ToInt32();
      break;
    case Kind::Double:
      cType = SQL_C_DOUBLE, sqlType = SQL_DOUBLE, data = &place.number;
      place.number = value.ToDouble();
      break;
    case Kind::DateTime:
    case Kind::Text:
    case Kind::Object: {  // raises a type mismatch: an object has no text
      const std::string* text = value.IfText();
      if (!text) text = &(place.utf8 = TextOf(value));
      if (connection_.IsUtf8()) {
        RequireUtf8(*text);
        return BindUtf8(parameter, *text);
      }
      return BindWide(parameter, *text);
    }
  }
  statement_.Check(SQLBindParameter(statement_.Get(), static_cast<SQLUSMALLINT>(parameter + 1), SQL_PARAM_INPUT, cType,
                                    sqlType, size, 0, data, place.indicator > 0 ? place.indicator : 0,
                                    &place.indicator));
}

std::string OdbcDriverStatement::TextOf(const Variant& value) const {
  const bool isFull = value.GetKind() == Kind::DateTime && connection_.Dialect().keepsMomentsAsTexts;
  return isFull ? value.ToDateTime().ToFullText() : value.ToText();
}

void OdbcDriverStatement::BindWide(std::size_t parameter, const std::string& text) {
  Parameter& place = Place(parameter);
  ToWide(text, place.text);
  place.indicator = Bytes(place.text.size());
  const SQLULEN size = std::max<SQLULEN>(1, place.text.size());
  statement_.Check(SQLBindParameter(statement_.Get(), static_cast<SQLUSMALLINT>(parameter + 1), SQL_PARAM_INPUT,
                                    SQL_C_WCHAR, SQL_WVARCHAR, size, 0, place.text.data(), place.indicator,
                                    &place.indicator));
}

void OdbcDriverStatement::BindUtf8(std::size_t parameter, const std::string& text) {
  SQLLEN& length = Place(parameter).indicator;
  length = static_cast<SQLLEN>(text.size());
  const SQLULEN size = std::max<SQLULEN>(1, text.size());
  statement_.Check(SQLBindParameter(statement_.Get(), static_cast<SQLUSMALLINT>(parameter + 1), SQL_PARAM_INPUT,
                                    SQL_C_CHAR, SQL_VARCHAR, size, 0, const_cast<char*>(text.data()), length, &length));
}

void OdbcDriverStatement::BindArray(std::size_t parameter, ParameterArray& array) {
  const SQLULEN size = array.cType == SQL_C_WCHAR ? array.width / sizeof(SQLWCHAR) : array.width;
  statement_.Check(SQLBindParameter(statement_.Get(), static_cast<SQLUSMALLINT>(parameter + 1), SQL_PARAM_INPUT,
                                    array.cType, array.sqlType, size, 0, array.cells.data(),
                                    static_cast<SQLLEN>(array.width), array.lengths.data()));
}

void OdbcDriverStatement::ArraySize(std::size_t rows) {
  statement_.Check(
      SQLSetStmtAttrW(statement_.Get(), SQL_ATTR_PARAMSET_SIZE, reinterpret_cast<SQLPOINTER>(rows), SQL_IS_UINTEGER));
}

bool OdbcDriverStatement::Step() {
  if (!isRunning_) Execute();
  if (hasRows_ && Fetch()) return true;
  Close();
  return false;
}

void OdbcDriverStatement::Execute() {
  connection_.Transaction().RequireKnown();
  if (const auto limit = connection_.QueryTimeout(); limit != std::exchange(limit_, limit)) {
    SQLSetStmtAttrW(statement_.Get(), SQL_ATTR_QUERY_TIMEOUT, reinterpret_cast<SQLPOINTER>(limit.count()),
                    SQL_IS_UINTEGER);
  }
  const bool mayBeOutdated = hasRows_ && !connection_.Dialect().refusesOutdatedQueries;
  if (mayBeOutdated && Clock::now() - prepared_ > kLongestTrust) {
    Prepare();
    Columns();  // not every driver knows them after a query without rows has ended
  }
  connection_.WatchStatement(shownText_);
  const SQLRETURN result = Heard([&] {
    const SQLRETURN answer = statement_.Call("a statement was executed", SQLExecute);
    if (answer != SQL_NO_DATA) statement_.Check(answer);  // no data: no row was affected
    return answer;
  });
  if (result == SQL_SUCCESS_WITH_INFO && connection_.Dialect().warningsAreErrors) {
    throw OdbcError(SQL_HANDLE_STMT, statement_.Get());
  }
  isRunning_ = true;
  SQLSMALLINT width = 0;
  statement_.Require(kDescribed, SQLNumResultCols, &width);
  hasRows_ = width > 0;
  SQLLEN rows = 0;
  if (!hasRows_ && result != SQL_NO_DATA) statement_.Check(SQLRowCount(statement_.Get(), &rows));
  affected_ = std::max<SQLLEN>(0, rows);
}

bool OdbcDriverStatement::Fetch() {
  return Heard([&] {
    const SQLRETURN result = statement_.Call("a row was read", SQLFetch);
    if (result == SQL_NO_DATA) return false;
    statement_.Check(result);
    return true;
  });
}

Variant OdbcDriverStatement::Value(std::size_t column) {
  const auto index = static_cast<SQLUSMALLINT>(column + 1);
  const Kind kind = Columns()[column].type;
  if (kind == Kind::Double) {  // a text would lose its last digits
    double number = 0;
    SQLLEN indicator = 0;
    statement_.Require(kRead, [&](SQLHANDLE statement) {
      return SQLGetData(statement, index, SQL_C_DOUBLE, &number, sizeof number, &indicator);
    });
    return indicator == SQL_NULL_DATA ? Variant::Null() : Variant(number);
  }
  std::optional<std::string> text = Text(index);
  return text ? FromDriverText(std::move(*text), kind) : Variant::Null();
}

std::optional<std::string> OdbcDriverStatement::Text(SQLUSMALLINT column) {
  if (connection_.IsUtf8()) {
    const auto text = Read(column, SQL_C_CHAR, utf8_);
    return text ? std::optional<std::string>(*text) : std::nullopt;
  }
  const auto text = Read(column, SQL_C_WCHAR, wide_);
  return text ? std::optional(FromWide(*text)) : std::nullopt;
}

template <typename Char>
std::optional<std::basic_string_view<Char>> OdbcDriverStatement::Read(SQLUSMALLINT column, SQLSMALLINT type,
                                                                      std::basic_string<Char>& buffer) {
  std::size_t read = 0;
  buffer.resize(std::max(buffer.size(), kFirstPiece));
  for (;;) {
    SQLLEN indicator = 0;
    const std::size_t room = buffer.size() - read;  // including the terminating zero
    const auto bytes = static_cast<SQLLEN>(room * sizeof buffer[0]);
    const SQLRETURN result = statement_.Call(kRead, SQLGetData, column, type, buffer.data() + read, bytes, &indicator);
    if (result == SQL_NO_DATA) break;
    statement_.Check(result);
    if (indicator == SQL_NULL_DATA) return std::nullopt;
    const bool isWhole = indicator != SQL_NO_TOTAL && indicator < bytes;
    if (isWhole) {
      read += static_cast<std::size_t>(indicator) / sizeof buffer[0];
      break;
    }
    read += room - 1;
    buffer.resize(buffer.size() * 2);
  }
  return std::basic_string_view<Char>(buffer.data(), read);
}

void OdbcDriverStatement::Reset() noexcept {
  Close();
  SQLFreeStmt(statement_.Get(), SQL_RESET_PARAMS);
}

void OdbcDriverStatement::Close() noexcept {
  const WatchedCall watched = statement_.Watched("a statement was closed");
  SQLFreeStmt(statement_.Get(), SQL_CLOSE);
  isRunning_ = false;
}

}  // namespace qmx
