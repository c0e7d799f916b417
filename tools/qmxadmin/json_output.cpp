#include "tools/qmxadmin/json_output.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace qmx {
namespace {

using Json = nlohmann::ordered_json;

// A count is written without a point, whatever kind of number the database counts in.
Json JsonNumber(double number) {
  constexpr double kExact = 1e15;
  if (std::abs(number) < kExact && number == std::trunc(number)) return static_cast<std::int64_t>(number);
  return number;
}

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
      return value.ToDateTime().ToFullText();  // one form for whoever parses it
    default:
      return value.ToText();
  }
}

}  // namespace

std::string JsonObject(const std::vector<ListingColumn>& columns, const std::vector<Variant>& row) {
  Json object = Json::object();
  for (std::size_t i = 0; i < columns.size(); ++i) object[columns[i].key] = JsonValue(row[i]);
  return object.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string JsonArray(const Listing& listing) {
  std::string text = "[";
  for (const std::vector<Variant>& row : listing.rows) {
    text += (text.size() == 1 ? "\n  " : ",\n  ") + JsonObject(listing.columns, row);
  }
  return text + "\n]\n";
}

}  // namespace qmx
