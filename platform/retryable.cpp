#include "platform/retryable.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace qmx {
namespace {

// The SQLSTATEs of every system: a conflict with another transaction, and a deadlock in PostgreSQL.
constexpr auto kStates = std::to_array<std::string_view>({"40001", "40P01"});

// The native codes of MariaDB, whose SQLSTATEs say less: a deadlock or a conflict in a cluster, a lock that was not
// released in time, and a cluster's node that does not serve statements yet.
constexpr auto kCodes = std::to_array<std::string_view>({"1213", "1205", "1047"});

bool Has(const auto& values, const std::string& value) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

}  // namespace

bool AsksToTryAgain(const Error& error) {
  return Has(kStates, error.DetailOf("SQLSTATE")) || Has(kCodes, error.DetailOf("native code"));
}

}  // namespace qmx
