#include "platform/odbc/answers.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/retryable.h"

namespace qmx {
namespace {

std::string_view State(const Error& error) { return error.DetailOf("SQLSTATE"); }
int NativeCode(const Error& error) { return std::atoi(error.DetailOf("native code").c_str()); }

// States that the driver, the driver manager, or a stopping or damaged server reports, and "completion unknown".
constexpr auto kNoRefusals =
    std::to_array<std::string_view>({"00", "01", "08", "40003", "57P0", "58", "F0", "HY", "IM", "S1", "XX"});

// MariaDB's codes: the connection was killed, the server stops, the connection broke, the commit was interrupted.
constexpr auto kNoRefusalCodes =
    std::to_array<int>({1053, 1152, 1153, 1154, 1155, 1156, 1157, 1158, 1159, 1160, 1161, 1184, 1317, 1927});
constexpr int kNotFinished = 1180;  // MariaDB's error during a commit, also where a node loses its cluster
// Codes of MariaDB and of its driver, which reports them with the state HY000.
constexpr auto kLossCodes = std::to_array<int>({1053, 1927, 2006, 2013, 2055});
constexpr auto kLossTexts =
    std::to_array<std::string_view>({"server closed the connection", "no connection to the server"});

}  // namespace

bool IsRefusal(const Error& commitError, Refusals signs) {
  const std::string_view state = State(commitError);
  const int code = NativeCode(commitError);
  const auto begins = [&](std::string_view beginning) { return state.starts_with(beginning); };
  switch (signs) {
    case Refusals::ByState:
      return !state.empty() && std::none_of(kNoRefusals.begin(), kNoRefusals.end(), begins);
    case Refusals::ByNativeCode:
      return code >= 1000 && (code < 2000 || code >= 3000) && !begins("08") && !begins("40003") &&
             std::find(kNoRefusalCodes.begin(), kNoRefusalCodes.end(), code) == kNoRefusalCodes.end();
    case Refusals::ByNativeCodeInACluster:
      return code != kNotFinished && IsRefusal(commitError, Refusals::ByNativeCode);
    case Refusals::Always:
      break;
  }
  return true;
}

bool IsLoss(const Error& error, Refusals signs) {
  if (AsksToTryAgain(error)) return false;
  if (signs == Refusals::ByNativeCodeInACluster && NativeCode(error) == kNotFinished) return true;
  const std::string_view state = State(error);
  if (state.empty()) return true;  // a failure without a reason is not an answer
  if (state.starts_with("08") || state.starts_with("57P0") || state == "40003") return true;
  if (!state.starts_with("HY")) return false;
  const auto isIn = [&](std::string_view text) { return error.Description().find(text) != std::string::npos; };
  return std::find(kLossCodes.begin(), kLossCodes.end(), NativeCode(error)) != kLossCodes.end() ||
         std::any_of(kLossTexts.begin(), kLossTexts.end(), isIn);
}

}  // namespace qmx
