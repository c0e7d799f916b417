#include "platform/odbc/errors.h"

#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "platform/odbc/driver_manager.h"
#include "platform/odbc/unicode.h"

namespace qmx {
namespace {

constexpr int kAnyCode = 0;

constexpr const char* kGrant = "Grant the missing privileges to the user (docs/databases.md lists them).";
constexpr const char* kWaited =
    "It took longer than the command time-out allows; where somebody else holds a lock, let that be released.";
constexpr const char* kNoDatabase = "Check the database's name.";
constexpr const char* kUnreachable = "Check the server's address and whether it runs.";
constexpr const char* kLost = "The connection to the server is lost; check that the server runs, then copy again.";
constexpr const char* kFull = "The server's disk is full; free disk space, then copy again.";
constexpr const char* kReadOnly = "The database is read-only; make it writable, then copy again.";
constexpr const char* kNoTable = "Check the database, or make its tables with \"qmxadmin init\".";
constexpr const char* kTooShort = "Widen the column, or shorten the value in the ERP.";
constexpr const char* kNotReady =
    "The cluster's node does not serve statements now; use another one, or copy again later.";
constexpr const char* kDeadlock = "Another program wrote the same rows at the same time; copy again.";

// The first matching rule decides. Some systems say what matters only in the native code or in the text.
struct Rule {
  std::string_view state;  // its beginning
  int native;
  std::string_view word;  // in the text
  std::int32_t number;
  const char* advice;
};

const auto kRules = std::to_array<Rule>({
    // MariaDB
    {"", 1205, "", errors::kTimeout, kWaited},  // lock wait
    {"", 1969, "", errors::kTimeout, kWaited},  // max_statement_time
    {"", 1213, "", errors::kProviderUnspecified, kDeadlock},
    {"", 1047, "", errors::kProviderUnspecified, kNotReady},
    {"", 1142, "", errors::kPermissionDenied, kGrant},
    {"", 1143, "", errors::kPermissionDenied, kGrant},
    {"", 1227, "", errors::kPermissionDenied, kGrant},
    {"", 1044, "", errors::kPermissionDenied, kGrant},
    {"", 1045, "", errors::kLogInFailed, "Check the user and the password."},
    {"", 1049, "", errors::kProviderUnspecified, kNoDatabase},
    {"", 1290, "", errors::kPermissionDenied, kReadOnly},
    {"", 1792, "", errors::kPermissionDenied, kReadOnly},
    {"", 1836, "", errors::kPermissionDenied, kReadOnly},
    {"", 1114, "", errors::kDiskFull, kFull},
    {"", 1021, "", errors::kDiskFull, kFull},
    {"", 1364, "", errors::kIntegrity, ""},  // a required column has no value
    {"", 1406, "", errors::kCommand, kTooShort},
    {"", 1265, "", errors::kTypeMismatch, ""},  // no date-time, no number
    {"", 1292, "", errors::kTypeMismatch, ""},
    {"", 1366, "", errors::kTypeMismatch, ""},
    {"", 1264, "", errors::kOverflow, ""},
    {"", 2002, "", errors::kProviderUnspecified, kUnreachable},
    {"", 2003, "", errors::kProviderUnspecified, kUnreachable},
    {"", 2057, "", errors::kCommand, ""},  // the columns of a prepared query have changed
    {"", 2006, "", errors::kProviderUnspecified, kLost},
    {"", 2013, "", errors::kProviderUnspecified, kLost},
    // SQLite
    {"HY000", kAnyCode, "no such table", errors::kNoSuchTable, kNoTable},
    {"HY000", kAnyCode, "constraint failed", errors::kIntegrity, ""},
    {"HY000", kAnyCode, "database is locked", errors::kTimeout, kWaited},
    {"HY000", kAnyCode, "readonly database", errors::kPermissionDenied, kReadOnly},
    {"HY000", kAnyCode, "disk is full", errors::kDiskFull, kFull},
    {"HY000", kAnyCode, "syntax error", errors::kCommand, ""},
    {"HY000", kAnyCode, "no such column", errors::kCommand, ""},
    // PostgreSQL, whose driver reports a refused log-in and a cut connection in the text only
    {"08001", kAnyCode, "FATAL:  database \"", errors::kProviderUnspecified, kNoDatabase},
    {"08001", kAnyCode, "password authentication failed", errors::kLogInFailed, "Check the user and the password."},
    {"HY000", kAnyCode, "server closed the connection", errors::kProviderUnspecified, kLost},
    {"HY000", kAnyCode, "no connection to the server", errors::kProviderUnspecified, kLost},
    {"57P0", kAnyCode, "", errors::kProviderUnspecified, kLost},
    {"57014", kAnyCode, "", errors::kTimeout, kWaited},
    {"55P03", kAnyCode, "", errors::kTimeout, kWaited},
    {"42P01", kAnyCode, "", errors::kNoSuchTable, kNoTable},
    {"42501", kAnyCode, "", errors::kPermissionDenied, kGrant},
    {"25006", kAnyCode, "", errors::kPermissionDenied, kReadOnly},
    {"53100", kAnyCode, "", errors::kDiskFull, kFull},
    {"53200", kAnyCode, "", errors::kOutOfMemory, ""},
    {"3D000", kAnyCode, "", errors::kProviderUnspecified, kNoDatabase},
    // every system
    {"42S02", kAnyCode, "", errors::kNoSuchTable, kNoTable},
    {"HYT0", kAnyCode, "", errors::kTimeout, kWaited},
    {"HY008", kAnyCode, "", errors::kTimeout, kWaited},
    {"HY001", kAnyCode, "", errors::kOutOfMemory, ""},
    {"IM00", kAnyCode, "", errors::kProviderUnspecified, kCheckNames},
    {"01000", kAnyCode, "Can't open lib", errors::kProviderUnspecified, kCheckNames},
    {"08001", kAnyCode, "", errors::kProviderUnspecified, kUnreachable},
    {"08", kAnyCode, "", errors::kProviderUnspecified, kLost},
    {"28", kAnyCode, "", errors::kLogInFailed, "Check the user and the password."},
    {"22001", kAnyCode, "", errors::kCommand, kTooShort},
    {"22003", kAnyCode, "", errors::kOverflow, ""},
    {"22", kAnyCode, "", errors::kTypeMismatch, ""},
    {"23", kAnyCode, "", errors::kIntegrity, ""},
    {"40", kAnyCode, "", errors::kProviderUnspecified, kDeadlock},
    {"42", kAnyCode, "", errors::kCommand, ""},
    {"37", kAnyCode, "", errors::kCommand, ""},
    {"0A", kAnyCode, "", errors::kCommand, ""},
    {"07", kAnyCode, "", errors::kCommand, ""},
    {"21", kAnyCode, "", errors::kCommand, ""},
});
constexpr Rule kOtherwise{"", kAnyCode, "", errors::kProviderUnspecified, ""};

const Rule& RuleFor(const Diagnostic& diagnostic) {
  const auto fits = [&](const Rule& rule) {
    return diagnostic.state.starts_with(rule.state) && (rule.native == kAnyCode || rule.native == diagnostic.native) &&
           diagnostic.text.find(rule.word) != std::string::npos;
  };
  const auto found = std::find_if(kRules.begin(), kRules.end(), fits);
  return found == kRules.end() ? kOtherwise : *found;
}

// "[unixODBC][Driver]ERROR: it broke;\nline 1" gives "ERROR: it broke; line 1".
std::string Cleaned(std::string text) {
  while (text.starts_with('[')) {
    const std::size_t end = text.find(']');
    if (end == std::string::npos) break;
    text.erase(0, text.find_first_not_of(' ', end + 1));
  }
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
  const std::size_t last = text.find_last_not_of(" .");
  text.resize(last == std::string::npos ? 0 : last + 1);
  return text;
}

}  // namespace

std::vector<Diagnostic> ReadDiagnostics(SQLSMALLINT handleType, SQLHANDLE handle) {
  std::vector<Diagnostic> diagnostics;
  for (SQLSMALLINT record = 1;; ++record) {
    std::array<SQLWCHAR, 6> state{};
    std::array<SQLWCHAR, 2048> text{};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    const SQLRETURN result = SQLGetDiagRecW(handleType, handle, record, state.data(), &native, text.data(),
                                            static_cast<SQLSMALLINT>(text.size()), &length);
    if (!SQL_SUCCEEDED(result)) return diagnostics;
    const auto end = std::find(text.begin(), text.end(), SQLWCHAR{0});
    diagnostics.push_back({FromWide({state.data(), 5}), native,
                           Cleaned(FromWide({text.data(), static_cast<std::size_t>(end - text.begin())}))});
  }
}

Error OdbcError(const std::vector<Diagnostic>& diagnostics) {
  if (diagnostics.empty()) {
    return {errors::kProviderUnspecified, "ODBC", "The driver reported a failure without a reason."};
  }
  const Rule* rule = &kOtherwise;
  std::string description;
  for (const Diagnostic& diagnostic : diagnostics) {
    if (rule == &kOtherwise) rule = &RuleFor(diagnostic);
    description += (description.empty() ? "" : " / ") + diagnostic.text + " (SQLSTATE " + diagnostic.state +
                   ", native code " + std::to_string(diagnostic.native) + ")";
  }
  description += '.';
  if (*rule->advice) description.append(" ").append(rule->advice);
  Error error(rule->number, "ODBC", description);
  error.With("SQLSTATE", diagnostics.front().state);
  error.With("native code", std::to_string(diagnostics.front().native));
  return error;
}

Error OdbcError(SQLSMALLINT handleType, SQLHANDLE handle) { return OdbcError(ReadDiagnostics(handleType, handle)); }

}  // namespace qmx
