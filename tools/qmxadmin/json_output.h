// Listings as JSON. Date-times are texts of the form "YYYY-MM-DD HH:MM:SS"; what is no UTF-8 shows the replacement
// character.
#pragma once

#include <string>

#include "tools/qmxadmin/listing.h"

namespace qmx {

std::string JsonArray(const Listing& listing);  // an object a row, each on a line of its own

// One row as one object, without a line end: for rows that are told as they come.
std::string JsonObject(const std::vector<ListingColumn>& columns, const std::vector<Variant>& row);

}  // namespace qmx
