#include "tools/qmxadmin/runs/age.h"

#include <charconv>
#include <ctime>
#include <iomanip>
#include <sstream>

#include "platform/error.h"

namespace qmx {
namespace {

// The form is that of std::get_time.
std::optional<RunMoment> Parsed(const std::string& text, const char* form) {
  std::tm parts{};
  parts.tm_isdst = -1;
  std::istringstream in(text);
  in >> std::get_time(&parts, form);
  if (!in || in.peek() != std::istringstream::traits_type::eof()) return std::nullopt;
  return RunMoment(std::chrono::seconds(std::mktime(&parts)));
}

}  // namespace

std::optional<std::chrono::seconds> ParseAge(const std::string& text) {
  using namespace std::chrono;
  int count = 0;
  const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (problem != std::errc() || count < 0) return std::nullopt;
  std::string unit(end, text.data() + text.size());
  unit.erase(0, unit.find_first_not_of(' '));
  if (unit == "s") return seconds(count);
  if (unit == "min") return minutes(count);
  if (unit == "h") return hours(count);
  if (unit == "d" || unit == "day" || unit == "days") return hours(24) * count;
  return std::nullopt;
}

std::chrono::seconds RequiredAge(const std::string& text) {
  if (const auto age = ParseAge(text)) return *age;
  throw Error(errors::kInvalidCall, "qmxadmin",
              "\"" + text + "\" is not an age. It must be such as 90min, 26h or 3days.");
}

RunMoment SinceMoment(const std::string& text, RunMoment now) {
  if (const auto age = ParseAge(text)) return now - *age;
  for (const char* form : {"%Y-%m-%d", "%Y-%m-%d %H:%M", "%Y-%m-%d %H:%M:%S"}) {
    if (const auto moment = Parsed(text, form)) return *moment;
  }
  throw Error(errors::kInvalidCall, "qmxadmin",
              "\"" + text + "\" is not a time. It must be such as 2026-11-20, \"2026-11-20 14:05\", 26h or 3days.");
}

std::optional<RunMoment> MomentOfLocalTime(const std::string& text) {
  const auto moment = Parsed(text, "%Y-%m-%d %H:%M:%S");
  return moment ? moment : Parsed(text, "%Y-%m-%d");
}

}  // namespace qmx
