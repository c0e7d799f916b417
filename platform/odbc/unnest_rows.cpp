#include "platform/odbc/unnest_rows.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

#include "platform/execution.h"
#include "platform/join.h"
#include "platform/odbc/catalog.h"
#include "platform/odbc/driver_manager.h"
#include "platform/odbc/statement.h"

namespace qmx {
namespace {

using Kind = Variant::Kind;

constexpr std::size_t kMostRows = 1000;  // with 500 a copy takes up to a tenth longer, for 2 MiB less

class UnnestRows : public DriverRows {
 public:
  UnnestRows(OdbcConnection& connection, const std::string& statement, std::size_t columns)
      : arrays_(columns), statement_(connection, statement) {}

  std::size_t Most() const override { return kMostRows; }

  std::size_t Add(std::span<const Variant> values) override {
    for (std::string& array : arrays_) array = '{';
    for (std::size_t at = 0; at < values.size();) {
      for (std::string& array : arrays_) AppendToArray(values[at++], array);
    }
    for (std::size_t column = 0; column < arrays_.size(); ++column) {
      arrays_[column].back() = '}';  // in place of the last ","
      kNarrowTextsAreUnchanged ? statement_.BindUtf8(column, arrays_[column])
                               : statement_.BindWide(column, arrays_[column]);
    }
    Execution(statement_).Run();
    return values.size() / arrays_.size();
  }

 private:
  std::vector<std::string> arrays_;  // their memory is used again
  OdbcDriverStatement statement_;
};

template <typename... Format>
void AppendNumber(std::string& array, auto number, Format... format) {
  std::array<char, 32> text{};
  array.append(text.data(), std::to_chars(text.begin(), text.end(), number, format...).ptr);
}

void AppendText(std::string_view text, std::string& array) {
  array += '"';
  const char* plain = text.data();  // the text from here on needs no "\\"
  const char* const end = text.data() + text.size();
  for (const char* at = plain; at != end; ++at) {
    if (*at != '"' && *at != '\\') continue;
    array.append(plain, at);
    array += '\\';
    plain = at;
  }
  array.append(plain, end);
  array += '"';
}

// Returns the server's names of the types, without lengths: a value that is too long must be refused, not cut. None if
// the connection's texts are not UTF-8.
std::vector<std::string> TypesOf(OdbcConnection& connection, const RowInsert& insert) {
  std::string names = "{";
  for (const ColumnDescription& column : insert.columns) AppendToArray(column.name, names);
  names.back() = '}';
  const Variant array(std::move(names));
  const Variant table(QuotedName(connection, insert.table));
  OdbcDriverStatement query(connection,
                            "select format_type(t.oid, -1) from unnest(?::name[]) with ordinality as c (name, place)"
                            " join pg_attribute a on a.attrelid = ?::regclass and a.attname = c.name"
                            " join pg_type t on t.oid = a.atttypid and t.typarray <> 0 and t.typdelim = ','"
                            " where current_setting('client_encoding') = 'UTF8' order by c.place");
  query.Bind(0, array);
  query.Bind(1, table);
  std::vector<std::string> types;
  while (query.Step()) types.push_back(query.Value(0).ToText());
  return types;
}

}  // namespace

void AppendToArray(const Variant& value, std::string& array) {
  switch (value.GetKind()) {
    case Kind::Empty:
    case Kind::Null:
      array += "NULL";
      break;
    case Kind::Boolean:
      array += value.ToBoolean() ? '1' : '0';
      break;
    case Kind::UInt8:
    case Kind::Int16:
    case Kind::Int32:
      AppendNumber(array, value.ToInt32());
      break;
    case Kind::Double:  // all its digits, as the driver writes it
      AppendNumber(array, value.ToDouble(), std::chars_format::general, 17);
      break;
    case Kind::DateTime:
    case Kind::Text:
    case Kind::Object:  // raises a type mismatch: an object has no text
      if (const std::string* text = value.IfText()) {
        AppendText(*text, array);
      } else {
        AppendText(value.ToText(), array);
      }
      break;
  }
  array += ',';
}

std::unique_ptr<DriverRows> RowsByUnnest(OdbcConnection& connection, const RowInsert& insert,
                                         std::unique_ptr<DriverRows> otherwise) {
  const std::vector<std::string> types = TypesOf(connection, insert);
  if (types.size() != insert.columns.size()) return otherwise;
  const std::string columns = Joined(types, ",", [](const std::string& type) { return "unnest(?::" + type + "[])"; });
  return std::make_unique<UnnestRows>(connection, insert.into + " select " + columns, types.size());
}

}  // namespace qmx
