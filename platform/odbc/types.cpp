#include "platform/odbc/types.h"

#include <sqlext.h>
#include <sqlucode.h>

#include <charconv>
#include <limits>
#include <optional>

#include "platform/names.h"

namespace qmx {
namespace {

using Kind = Variant::Kind;

template <typename Integer>
Variant InRange(std::int64_t value) {
  const bool fits = value >= std::numeric_limits<Integer>::min() && value <= std::numeric_limits<Integer>::max();
  if (fits) return static_cast<Integer>(value);
  if (value >= INT32_MIN && value <= INT32_MAX) return static_cast<std::int32_t>(value);
  return static_cast<double>(value);
}

std::optional<Variant> FromIntegerText(std::string_view text, Kind kind) {
  std::int64_t value = 0;
  const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (problem != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (kind == Kind::UInt8) return InRange<std::uint8_t>(value);
  if (kind == Kind::Int16) return InRange<std::int16_t>(value);
  return InRange<std::int32_t>(value);
}

std::optional<Variant> FromBooleanText(std::string_view text) {
  for (const std::string_view yes : {"1", "-1", "t", "true"}) {
    if (SameName(text, yes)) return true;
  }
  for (const std::string_view no : {"0", "f", "false"}) {
    if (SameName(text, no)) return false;
  }
  return std::nullopt;
}

}  // namespace

Kind KindOfSqlType(SQLLEN sqlType, std::string_view typeName, bool isUnsigned) {
  if (SameName(typeName, "bool") || SameName(typeName, "boolean")) return Kind::Boolean;
  switch (sqlType) {
    case SQL_BIT:
      return Kind::Boolean;
    case SQL_TINYINT:
      return isUnsigned ? Kind::UInt8 : Kind::Int16;
    case SQL_SMALLINT:
      return isUnsigned ? Kind::Int32 : Kind::Int16;
    case SQL_INTEGER:
      return isUnsigned ? Kind::Double : Kind::Int32;
    case SQL_BIGINT:
    case SQL_NUMERIC:
    case SQL_DECIMAL:
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return Kind::Double;
    case SQL_DATE:
    case SQL_TIMESTAMP:
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIMESTAMP:
      return Kind::DateTime;
    case SQL_CHAR:
    case SQL_VARCHAR:
    case SQL_LONGVARCHAR:
    case SQL_WCHAR:
    case SQL_WVARCHAR:
    case SQL_WLONGVARCHAR:
      return Kind::Text;
    default:
      return Kind::Empty;
  }
}

Variant FromDriverText(std::string text, Kind kind) {
  std::optional<Variant> value;
  if (kind == Kind::Boolean) value = FromBooleanText(text);
  if (kind == Kind::UInt8 || kind == Kind::Int16 || kind == Kind::Int32) value = FromIntegerText(text, kind);
  if (kind == Kind::DateTime) {
    if (const std::optional<DateTime> moment = DateTime::Parse(text)) value = *moment;
  }
  if (kind == Kind::Double) {
    if (const std::optional<double> number = ParseNumber(text)) value = *number;
  }
  return value ? *value : Variant(std::move(text));
}

}  // namespace qmx
