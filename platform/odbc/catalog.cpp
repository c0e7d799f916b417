#include "platform/odbc/catalog.h"

#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <vector>

#include "platform/names.h"
#include "platform/odbc/connection.h"
#include "platform/odbc/statement.h"

namespace qmx {
namespace {

constexpr const char* kRead = "the catalog was read";

std::string TextOf(const StatementHandle& statement, SQLUSMALLINT column) {
  std::array<SQLWCHAR, 512> text{};
  SQLLEN indicator = 0;
  statement.Require(kRead, [&](SQLHANDLE handle) {
    return SQLGetData(handle, column, SQL_C_WCHAR, text.data(), sizeof text, &indicator);
  });
  return indicator == SQL_NULL_DATA ? std::string() : FromWide(text.data());
}

int NumberOf(const StatementHandle& statement, SQLUSMALLINT column) {
  SQLINTEGER number = 0;
  SQLLEN indicator = 0;
  statement.Require(kRead, [&](SQLHANDLE handle) {
    return SQLGetData(handle, column, SQL_C_SLONG, &number, sizeof number, &indicator);
  });
  return indicator == SQL_NULL_DATA ? 0 : number;
}

// Returns the key columns' names in order. If several schemas have a table of that name, the one that an unqualified
// name means counts, else the first.
std::vector<std::string> PrimaryKey(OdbcConnection& connection, const std::string& table) {
  std::map<std::string, std::map<int, std::string>> keys;  // by schema, then by position
  {
    const StatementHandle statement(connection);
    WideText name = ToWide(table);
    statement.Require(kRead, [&](SQLHANDLE handle) {
      return SQLPrimaryKeysW(handle, nullptr, 0, nullptr, 0, name.data(), static_cast<SQLSMALLINT>(name.size()));
    });
    while (SQL_SUCCEEDED(statement.Call(kRead, SQLFetch))) {
      const std::string schema = TextOf(statement, 2);
      const std::string column = TextOf(statement, 4);
      keys[schema][NumberOf(statement, 5)] = column;
    }
  }
  if (keys.empty()) return {};
  const std::string& schemaQuery = connection.Dialect().schemaQuery;
  const std::string schema = schemaQuery.empty() || keys.size() == 1 ? "" : connection.AskText(schemaQuery);
  const auto meant = keys.find(schema);
  std::vector<std::string> columns;
  for (const auto& [place, column] : (meant == keys.end() ? keys.begin() : meant)->second) columns.push_back(column);
  return columns;
}

std::vector<std::string> BestRowIdentifier(OdbcConnection& connection, const std::string& table) {
  const StatementHandle statement(connection);
  WideText name = ToWide(table);
  const SQLRETURN result = statement.Call(kRead, [&](SQLHANDLE handle) {
    return SQLSpecialColumnsW(handle, SQL_BEST_ROWID, nullptr, 0, nullptr, 0, name.data(),
                              static_cast<SQLSMALLINT>(name.size()), SQL_SCOPE_SESSION, SQL_NO_NULLS);
  });
  std::vector<std::string> columns;
  if (!SQL_SUCCEEDED(result)) return columns;
  while (SQL_SUCCEEDED(statement.Call(kRead, SQLFetch))) columns.push_back(TextOf(statement, 2));
  return columns;
}

std::set<std::string> RequiredColumns(const OdbcConnection& connection, const std::string& table) {
  const StatementHandle statement(connection);
  WideText name = ToWide(table);
  std::set<std::string> required;
  const SQLRETURN result = statement.Call(kRead, [&](SQLHANDLE handle) {
    return SQLColumnsW(handle, nullptr, 0, nullptr, 0, name.data(), static_cast<SQLSMALLINT>(name.size()), nullptr, 0);
  });
  if (!SQL_SUCCEEDED(result)) return required;
  while (SQL_SUCCEEDED(statement.Call(kRead, SQLFetch))) {
    const std::string owner = TextOf(statement, 3);  // "_" in the requested name matches any letter
    const std::string column = TextOf(statement, 4);
    if (NumberOf(statement, 11) == SQL_NO_NULLS && owner == table) required.insert(column);
  }
  return required;
}

// Returns the columns of a unique index without nullable columns; none if there is no such index.
std::vector<std::string> UniqueIndex(OdbcConnection& connection, const std::string& table) {
  std::map<std::string, std::vector<std::string>> indexes;
  {
    const StatementHandle statement(connection);
    WideText name = ToWide(table);
    const SQLRETURN result = statement.Call(kRead, [&](SQLHANDLE handle) {
      return SQLStatisticsW(handle, nullptr, 0, nullptr, 0, name.data(), static_cast<SQLSMALLINT>(name.size()),
                            SQL_INDEX_UNIQUE, SQL_QUICK);
    });
    if (!SQL_SUCCEEDED(result)) return {};
    while (SQL_SUCCEEDED(statement.Call(kRead, SQLFetch))) {
      const bool isIndex = NumberOf(statement, 7) != SQL_TABLE_STAT;
      const std::string index = TextOf(statement, 6);
      const std::string column = TextOf(statement, 9);
      const bool isPartial = !TextOf(statement, 13).empty();
      if (isIndex) indexes[index].push_back(isPartial ? "" : column);
    }
  }
  if (indexes.empty()) return {};
  const std::set<std::string> required = RequiredColumns(connection, table);
  for (const auto& [index, columns] : indexes) {
    const auto isRequired = [&](const std::string& column) { return required.contains(column); };
    if (std::all_of(columns.begin(), columns.end(), isRequired)) return columns;
  }
  return {};
}

std::vector<ColumnDescription> ColumnsOf(OdbcConnection& connection, const std::string& table) {
  OdbcDriverStatement query(connection, "select * from " + QuotedName(connection, table) + " where 1=0");
  std::vector<ColumnDescription> columns = query.Columns();
  query.Step();  // some drivers look up the table only now
  return columns;
}

// Returns the name of a table that differs in case only, as the database spells it; "" when there is none.
std::string SpellingOf(const OdbcConnection& connection, const std::string& table) {
  const StatementHandle statement(connection);
  WideText types = ToWide("TABLE,VIEW");
  const SQLRETURN result = statement.Call(kRead, [&](SQLHANDLE handle) {
    return SQLTablesW(handle, nullptr, 0, nullptr, 0, nullptr, 0, types.data(), static_cast<SQLSMALLINT>(types.size()));
  });
  if (!SQL_SUCCEEDED(result)) return {};
  while (SQL_SUCCEEDED(statement.Call(kRead, SQLFetch))) {
    if (const std::string name = TextOf(statement, 3); SameName(name, table) && name != table) return name;
  }
  return {};
}

// Returns the indexes of the named columns; none if a name is missing, as that of a hidden row number is.
std::vector<std::size_t> Indexes(const std::vector<ColumnDescription>& columns, const std::vector<std::string>& names) {
  std::vector<std::size_t> indexes;
  for (const std::string& name : names) {
    for (std::size_t index = 0; index < columns.size(); ++index) {
      if (SameName(columns[index].name, name)) indexes.push_back(index);
    }
  }
  return indexes.size() == names.size() ? indexes : std::vector<std::size_t>();
}

}  // namespace

std::string QuotedName(const OdbcConnection& connection, const std::string& name) {
  const std::string& quote = connection.IdentifierQuote();
  if (quote.empty() || quote == " ") return name;
  std::string quoted = quote;
  for (const char c : name) quoted.append(c == quote[0] ? 2 : 1, c);
  return quoted + quote;
}

TableDescription DescribeTable(OdbcConnection& connection, const std::string& name) {
  TableDescription description;
  description.name = name;
  try {
    description.columns = ColumnsOf(connection, name);
  } catch (Error& error) {
    const std::string spelling = error.Number() == errors::kNoSuchTable ? SpellingOf(connection, name) : "";
    if (spelling.empty()) {
      error.With("table", name);
      throw;
    }
    description.name = spelling;
    description.columns = ColumnsOf(connection, spelling);
  }
  for (const auto find : {PrimaryKey, BestRowIdentifier, UniqueIndex}) {
    if (description.key.empty()) description.key = Indexes(description.columns, find(connection, description.name));
  }
  return description;
}

}  // namespace qmx
