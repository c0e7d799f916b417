#include "platform/system/clock.h"

#include <locale.h>

#include <ctime>

#include "platform/system/environment.h"

namespace qmx {
namespace {

// Reads the variables that setlocale would read, in its order, without a change for the whole process.
std::string LocaleOfEnvironment() {
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    if (const auto name = EnvironmentVariable(variable); name && !name->empty()) return *name;
  }
  return {};
}

bool IsUnset(const std::string& name) {
  return name.empty() || name == "C" || name == "POSIX" || name.starts_with("C.") || name.starts_with("POSIX.");
}

std::tm BrokenDown(DateTime moment) {
  std::tm parts{};
  parts.tm_year = moment.Year() - 1900;
  parts.tm_mon = moment.Month() - 1;
  parts.tm_mday = moment.Day();
  parts.tm_hour = moment.Hour();
  parts.tm_min = moment.Minute();
  parts.tm_sec = moment.Second();
  // The zero date-time was a Saturday.
  const std::int64_t days = moment.DatePart().Seconds() / DateTime::kSecondsPerDay;
  parts.tm_wday = static_cast<int>(((days + 6) % 7 + 7) % 7);
  parts.tm_yday = static_cast<int>((moment.DatePart().Seconds() - DateTime::FromDate(moment.Year(), 1, 1).Seconds()) /
                                   DateTime::kSecondsPerDay);
  return parts;
}

}  // namespace

DateTime LocalTime(std::time_t moment) {
  std::tm parts{};
  localtime_r(&moment, &parts);
  return DateTime::FromDate(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday)
      .PlusTime(parts.tm_hour, parts.tm_min, parts.tm_sec);
}

long OffsetFromUtc(std::time_t moment) {
  std::tm parts{};
  localtime_r(&moment, &parts);
  return parts.tm_gmtoff;
}

struct SystemClock::Locale {
  explicit Locale(locale_t opened) : handle(opened) {}
  ~Locale() { freelocale(handle); }
  Locale(const Locale&) = delete;
  Locale& operator=(const Locale&) = delete;

  locale_t handle;
};

SystemClock::SystemClock() : SystemClock(LocaleOfEnvironment()) {}

SystemClock::SystemClock(const std::string& localeName) {
  if (IsUnset(localeName)) return;
  if (const locale_t opened = newlocale(LC_TIME_MASK, localeName.c_str(), nullptr)) {
    locale_ = std::make_unique<Locale>(opened);
  }
}

SystemClock::~SystemClock() = default;

DateTime SystemClock::Now() { return LocalTime(std::time(nullptr)); }

std::string SystemClock::DateText(DateTime moment) {
  return locale_ ? Format("%x", moment) : moment.DatePart().ToText();
}

std::string SystemClock::TimeText(DateTime moment) { return Format(locale_ ? "%X" : "%H:%M:%S", moment); }

std::string SystemClock::Format(const char* format, DateTime moment) const {
  const std::tm parts = BrokenDown(moment);
  char text[256];
  const std::size_t length = locale_ ? strftime_l(text, sizeof text, format, &parts, locale_->handle)
                                     : std::strftime(text, sizeof text, format, &parts);
  return {text, length};
}

}  // namespace qmx
