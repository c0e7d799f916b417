#include "platform/system/clock.h"

#include <windows.h>

#include <optional>

#include "platform/windows/wide_text.h"

namespace qmx {
namespace {

constexpr std::int64_t kTicksPerSecond = 10'000'000;
constexpr std::int64_t kUnixEpoch = 11'644'473'600;  // in seconds since 1601

DateTime FromSystem(const SYSTEMTIME& time) {
  return DateTime::FromDate(time.wYear, time.wMonth, time.wDay).PlusTime(time.wHour, time.wMinute, time.wSecond);
}

SYSTEMTIME ToSystem(DateTime moment) {
  SYSTEMTIME time{};
  time.wYear = static_cast<WORD>(moment.Year());
  time.wMonth = static_cast<WORD>(moment.Month());
  time.wDay = static_cast<WORD>(moment.Day());
  time.wHour = static_cast<WORD>(moment.Hour());
  time.wMinute = static_cast<WORD>(moment.Minute());
  time.wSecond = static_cast<WORD>(moment.Second());
  return time;
}

SYSTEMTIME Utc(std::time_t moment) {
  ULARGE_INTEGER ticks{};
  ticks.QuadPart = static_cast<ULONGLONG>((moment + kUnixEpoch) * kTicksPerSecond);
  const FILETIME time{ticks.LowPart, ticks.HighPart};
  SYSTEMTIME utc{};
  FileTimeToSystemTime(&time, &utc);
  return utc;
}

}  // namespace

DateTime LocalTime(std::time_t moment) {
  const SYSTEMTIME utc = Utc(moment);
  SYSTEMTIME local{};
  return FromSystem(SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local) ? local : utc);
}

long OffsetFromUtc(std::time_t moment) {
  return static_cast<long>(LocalTime(moment).Seconds() - FromSystem(Utc(moment)).Seconds());
}

struct SystemClock::Locale {
  std::optional<std::wstring> name;  // none is the user's own
  const wchar_t* Name() const { return name ? name->c_str() : LOCALE_NAME_USER_DEFAULT; }
};

SystemClock::SystemClock() : locale_(new Locale) {}

SystemClock::SystemClock(const std::string& localeName) {
  const std::wstring name = WideText(localeName);
  if (!name.empty() && IsValidLocaleName(name.c_str())) locale_.reset(new Locale{name});
}

SystemClock::~SystemClock() = default;

DateTime SystemClock::Now() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return FromSystem(now);
}

// `format` is that of the ISO form. Years before 1601, which Windows does not know, have that form too.
std::string SystemClock::Format(const char* format, DateTime moment) const {
  const bool isDate = format == std::string("%x");
  const SYSTEMTIME time = ToSystem(moment);
  wchar_t text[256];
  const int length =
      !locale_ ? 0
      : isDate ? GetDateFormatEx(locale_->Name(), DATE_SHORTDATE, &time, nullptr, text, std::size(text), nullptr)
               : GetTimeFormatEx(locale_->Name(), 0, &time, nullptr, text, std::size(text));
  if (length > 0) return NarrowText({text, static_cast<std::size_t>(length - 1)});
  if (isDate) return moment.DatePart().ToText();
  char iso[16];
  std::snprintf(iso, sizeof iso, "%02d:%02d:%02d", moment.Hour(), moment.Minute(), moment.Second());
  return iso;
}

std::string SystemClock::DateText(DateTime moment) { return Format("%x", moment); }

std::string SystemClock::TimeText(DateTime moment) { return Format("%X", moment); }

}  // namespace qmx
