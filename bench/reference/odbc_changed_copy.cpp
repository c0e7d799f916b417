// odbc_changed_copy ORVAN CONNECTION [differences]: a changed copy of the service orders with ODBC's C interface, in
// one transaction, with prepared statements for single rows. CONNECTION is a connection text of ODBC. With
// "differences" an update writes only the columns that differ.
#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>

#include "bench/reference/changed_copy.h"

namespace {

using reference::Kind;
using reference::kOrderColumns;

template <SQLSMALLINT type>
class Handle {
 public:
  explicit Handle(SQLHANDLE parent) {
    if (!SQL_SUCCEEDED(SQLAllocHandle(type, parent, &handle_))) throw std::runtime_error("SQLAllocHandle");
  }
  ~Handle() { SQLFreeHandle(type, handle_); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  SQLHANDLE Get() const { return handle_; }

  void Check(SQLRETURN result) const {
    if (SQL_SUCCEEDED(result)) return;
    SQLCHAR state[6] = "", text[512] = "";
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    SQLGetDiagRec(type, handle_, 1, state, &native, text, sizeof text, &length);
    throw std::runtime_error(reinterpret_cast<const char*>(text));
  }

 private:
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

SQLCHAR* Characters(std::string& text) { return reinterpret_cast<SQLCHAR*>(text.data()); }
SQLPOINTER AsPointer(std::uintptr_t number) { return reinterpret_cast<SQLPOINTER>(number); }

class Connection {
 public:
  explicit Connection(std::string text) {
    environment_.Check(SQLSetEnvAttr(environment_.Get(), SQL_ATTR_ODBC_VERSION, AsPointer(SQL_OV_ODBC3), 0));
    connection_.emplace(environment_.Get());
    connection_->Check(SQLDriverConnect(connection_->Get(), nullptr, Characters(text), SQL_NTS, nullptr, 0, nullptr,
                                        SQL_DRIVER_NOPROMPT));
    connection_->Check(
        SQLSetConnectAttr(connection_->Get(), SQL_ATTR_AUTOCOMMIT, AsPointer(SQL_AUTOCOMMIT_OFF), SQL_IS_UINTEGER));
  }
  ~Connection() {
    SQLEndTran(SQL_HANDLE_DBC, connection_->Get(), SQL_ROLLBACK);
    SQLDisconnect(connection_->Get());
  }
  void Commit() { connection_->Check(SQLEndTran(SQL_HANDLE_DBC, connection_->Get(), SQL_COMMIT)); }
  SQLHANDLE Get() const { return connection_->Get(); }

 private:
  Handle<SQL_HANDLE_ENV> environment_{SQL_NULL_HANDLE};
  std::optional<Handle<SQL_HANDLE_DBC>> connection_;
};

// Values that are bound once and set for each row.
struct Place {
  char text[512];
  double number;
  SQLINTEGER whole;
  SQLLEN indicator;

  void Take(std::string_view value) {
    if (value.size() > sizeof text) throw std::runtime_error("a text is too long");
    std::copy(value.begin(), value.end(), text);
    indicator = static_cast<SQLLEN>(value.size());
  }
};

class Prepared {
 public:
  Prepared(const Connection& connection, std::string text, std::vector<int> columns)
      : statement_(connection.Get()), columns_(std::move(columns)), places_(columns_.size()) {
    statement_.Check(SQLPrepare(statement_.Get(), Characters(text), SQL_NTS));
    for (std::size_t i = 0; i < columns_.size(); ++i) BindParameter(i);
  }

  // The row's columns, in the order of the parameters.
  void Run(const reference::Statement& row) {
    for (std::size_t i = 0; i < columns_.size(); ++i) Fill(places_[i], row, columns_[i]);
    statement_.Check(SQLExecute(statement_.Get()));
  }
  void Run(const std::string& orno) {  // if it is the only parameter
    places_[0].Take(orno);
    const SQLRETURN result = SQLExecute(statement_.Get());
    if (result != SQL_NO_DATA) statement_.Check(result);
  }

  void BindColumns(std::vector<Place>& places) {
    for (std::size_t i = 0; i < places.size(); ++i) {
      statement_.Check(SQLBindCol(statement_.Get(), static_cast<SQLUSMALLINT>(i + 1), SQL_C_CHAR, places[i].text,
                                  sizeof places[i].text, &places[i].indicator));
    }
  }
  bool Fetch() {
    const SQLRETURN result = SQLFetch(statement_.Get());
    if (result != SQL_NO_DATA) statement_.Check(result);
    return result != SQL_NO_DATA;
  }
  void Close() { statement_.Check(SQLFreeStmt(statement_.Get(), SQL_CLOSE)); }

 private:
  void BindParameter(std::size_t i) {
    Place& place = places_[i];
    const Kind kind = kOrderColumns[static_cast<std::size_t>(columns_[i])].kind;
    SQLSMALLINT cType = SQL_C_CHAR, sqlType = SQL_VARCHAR;
    SQLPOINTER data = place.text;
    SQLULEN size = sizeof place.text;
    if (kind == Kind::Number) cType = SQL_C_DOUBLE, sqlType = SQL_DOUBLE, data = &place.number, size = 0;
    if (kind == Kind::YesNo) cType = SQL_C_SLONG, sqlType = SQL_INTEGER, data = &place.whole, size = 0;
    statement_.Check(SQLBindParameter(statement_.Get(), static_cast<SQLUSMALLINT>(i + 1), SQL_PARAM_INPUT, cType,
                                      sqlType, size, 0, data, sizeof place.text, &place.indicator));
  }

  static void Fill(Place& place, const reference::Statement& row, int column) {
    const Kind kind = kOrderColumns[static_cast<std::size_t>(column)].kind;
    place.indicator = 0;
    if (reference::IsNull(row, column)) {
      place.indicator = SQL_NULL_DATA;
    } else if (kind == Kind::Number) {
      place.number = sqlite3_column_double(row.Get(), column);
    } else if (kind == Kind::YesNo) {
      place.whole = sqlite3_column_int(row.Get(), column) == 1 ? 1 : 0;
    } else {
      place.Take(reference::LocalText(row, column, kind));
    }
  }

  Handle<SQL_HANDLE_STMT> statement_;
  std::vector<int> columns_;
  std::vector<Place> places_;
};

reference::Columns ThenNumber(reference::Columns columns) {
  columns.push_back(reference::kNumber);
  return columns;
}

reference::Columns AllColumns() {
  reference::Columns columns = reference::UpdatedColumns(false);
  columns.insert(columns.begin(), reference::kNumber);
  return columns;
}

class Local {
 public:
  explicit Local(const Connection& connection) : connection_(connection) { select_.BindColumns(found_); }

  void Delete(const std::string& orno) { delete_.Run(orno); }

  bool Find(const std::string& orno) {
    select_.Run(orno);
    const bool isKnown = select_.Fetch();
    select_.Close();
    return isKnown;
  }
  std::string_view Partner() const { return Found(reference::kPartner); }
  bool HasPageFrequency() const { return Number(reference::kPageFrequency) != 0; }
  bool Differs(const reference::Statement& row, int column) const {
    const Kind kind = kOrderColumns[static_cast<std::size_t>(column)].kind;
    const bool isNull = reference::IsNull(row, column);
    if (isNull || IsNull(column)) return isNull != IsNull(column);
    if (kind == Kind::Number) return sqlite3_column_double(row.Get(), column) != Number(column);
    return reference::LocalText(row, column, kind) != Found(column);
  }

  void Insert(const reference::Statement& row) { insert_.Run(row); }
  void Change(const reference::Update& update, const reference::Statement& row) {
    const auto prepare = [&](const reference::Update& made) {
      return std::make_unique<Prepared>(connection_, reference::UpdateOrder(made), ThenNumber(made.columns));
    };
    updates_.For(update, prepare)->Run(row);
  }

 private:
  const Place& PlaceOf(int column) const { return found_[static_cast<std::size_t>(column)]; }
  bool IsNull(int column) const { return PlaceOf(column).indicator == SQL_NULL_DATA; }
  std::string_view Found(int column) const {
    return {PlaceOf(column).text, static_cast<std::size_t>(PlaceOf(column).indicator)};
  }
  double Number(int column) const { return std::strtod(PlaceOf(column).text, nullptr); }

  const Connection& connection_;
  std::vector<Place> found_{kOrderColumns.size()};
  Prepared delete_{connection_, "delete from tssoc200 where orno=?", {reference::kNumber}};
  Prepared select_{connection_, "select * from tssoc200 where orno=?", {reference::kNumber}};
  Prepared insert_{connection_, reference::InsertOrder(), AllColumns()};
  reference::Updates<std::unique_ptr<Prepared>> updates_;
};

}  // namespace

int main(int argc, char** argv) {
  try {
    const bool differences = argc == 4 && std::strcmp(argv[3], reference::kOnlyDifferences) == 0;
    if (argc != 3 && !differences) throw std::runtime_error("usage: odbc_changed_copy ORVAN CONNECTION [differences]");
    Connection connection(argv[2]);
    {
      Local local(connection);
      reference::Changes(argv[1], local, differences).Apply();
    }
    connection.Commit();
  } catch (const std::exception& failure) {
    std::cerr << "odbc_changed_copy: " << failure.what() << '\n';
    return 1;
  }
}
