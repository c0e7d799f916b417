// JSON output. Date-times are texts of the form "YYYY-MM-DD HH:MM:SS". Bytes that are not UTF-8 become the replacement
// character.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <ostream>
#include <string>

#include "tools/qmxadmin/listing.h"

namespace qmx {

using Json = nlohmann::ordered_json;

Json JsonValue(const Variant& value);
Json JsonObject(const std::vector<ListingColumn>& columns, const std::vector<Variant>& row);
std::string JsonText(const Json& value);  // on one line, without a line end

// Writes a JSON array as its elements arrive, one per line.
class JsonArrayWriter {
 public:
  explicit JsonArrayWriter(std::ostream& out) : out_(out) {}  // borrowed
  void Add(const Json& element);
  void End();  // once, after the last element

 private:
  std::ostream& out_;
  bool isFirst_ = true;
};

// Returns an array with one object per row.
std::string JsonArray(const Listing& listing);

}  // namespace qmx
