#include "tools/qmxadmin/json_output.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>

namespace qmx {
namespace {

// Writes whole numbers without a decimal point. Some databases count in doubles.
Json JsonNumber(double number) {
  constexpr double kExact = 1e15;
  if (std::abs(number) < kExact && number == std::trunc(number)) return static_cast<std::int64_t>(number);
  return number;
}

}  // namespace

Json JsonValue(const Variant& value) {
  switch (value.GetKind()) {
    case Variant::Kind::Empty:
    case Variant::Kind::Null:
      return nullptr;
    case Variant::Kind::Boolean:
      return value.ToBoolean();
    case Variant::Kind::UInt8:
    case Variant::Kind::Int16:
    case Variant::Kind::Int32:
      return value.ToInt32();
    case Variant::Kind::Double:
      return JsonNumber(value.ToDouble());
    case Variant::Kind::DateTime:
      return value.ToDateTime().ToFullText();  // always with the time of day, because a parser expects one form
    default:
      return value.ToText();
  }
}

Json JsonObject(const std::vector<ListingColumn>& columns, const std::vector<Variant>& row) {
  Json object = Json::object();
  for (std::size_t i = 0; i < columns.size(); ++i) object[columns[i].key] = JsonValue(row[i]);
  return object;
}

std::string JsonText(const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

void JsonArrayWriter::Add(const Json& element) {
  out_ << (isFirst_ ? "[\n  " : ",\n  ") << JsonText(element);
  isFirst_ = false;
}

void JsonArrayWriter::End() { out_ << (isFirst_ ? "[" : "") << "\n]\n"; }

std::string JsonArray(const Listing& listing) {
  std::ostringstream text;
  JsonArrayWriter array(text);
  for (const std::vector<Variant>& row : listing.rows) array.Add(JsonObject(listing.columns, row));
  array.End();
  return text.str();
}

}  // namespace qmx
