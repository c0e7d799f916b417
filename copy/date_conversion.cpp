// Converts the ERP's date objects and yes/no codes, and reads the calendar setting.
//
// The ERP counts years from 1900 and months from 0. Getters and setters are called in the ERP's own spelling.
#include <charconv>
#include <cmath>
#include <string_view>

#include "copy/clsDataCopy.h"
#include "copy/split.h"
#include "platform/clock.h"
#include "platform/error.h"
#include "platform/text_files.h"
#include "platform/trim.h"

namespace qmx {
namespace {

constexpr int kFileNumber = 1;
constexpr std::int16_t kDefaultLookBack = 60;

const Member kGetYear = "getyear";
const Member kGetMonth = "getMonth";
const Member kGetDate = "getDate";
const Member kGetHours = "getHours";
const Member kGetMinutes = "getMinutes";
const Member kGetSeconds = "getSeconds";

inline std::int16_t Part(const Object& date, const Member& getter) { return date.Call(getter).ToInt16(); }

// Returns the number at the beginning of a text, after any blanks and tabs; 0 if there is none.
double LeadingNumber(const std::string& text) {
  const std::string_view number = Trimmed(text, " \t");
  const std::string_view digits = number.substr(number.find_first_of("+-") == 0 ? 1 : 0);
  if (digits.find_first_of("0123456789.") != 0) return 0;  // from_chars would take "inf" and "nan"
  double ignored = 0;
  const char* const end = std::from_chars(digits.data(), digits.data() + digits.size(), ignored).ptr;
  return ParseNumber({number.data(), end}).value_or(0);
}

}  // namespace

bool clsDataCopy::DateObjectToDate(const Object& date) {
  const std::int16_t year = Part(date, kGetYear);
  const std::int16_t month = Part(date, kGetMonth);
  if (year == 0 && month == 0) {
    ConvertedDate = std::int16_t{0};
    return false;
  }
  const std::int64_t fullYear = Part(date, kGetYear) + 1900;
  const std::int64_t fullMonth = Part(date, kGetMonth) + 1;
  const DateTime day = DateTime::FromDate(fullYear, fullMonth, Part(date, kGetDate));
  const std::int16_t hours = Part(date, kGetHours);
  const std::int16_t minutes = Part(date, kGetMinutes);
  ConvertedDate = day.PlusTime(hours, minutes, Part(date, kGetSeconds));
  return true;
}

std::uint8_t clsDataCopy::YesNoToFlag(std::int16_t code) { return code == 1 ? 1 : 0; }

Object clsDataCopy::NowAsDateObject() {
  const Object date = platform_.components.CreateObject("java:java.util.Date");
  const DateTime today = Now();
  date.Call("setDate", static_cast<std::int16_t>(today.Day()));
  date.Call("setmonth", static_cast<std::int16_t>(today.Month() - 1));
  date.Call("setYear", static_cast<std::int16_t>(today.Year() - 1900));
  // Three readings of the clock: at a minute's or an hour's boundary the parts may belong to different moments.
  date.Call("setHours", static_cast<std::int16_t>(Now().Hour()));
  date.Call("setMinutes", static_cast<std::int16_t>(Now().Minute()));
  date.Call("setSeconds", static_cast<std::int16_t>(Now().Second()));
  return date;
}

std::int16_t clsDataCopy::ReadCalendarLookBack() {
  try {
    platform_.files.OpenForInput(platform_.files.CurrentDirectory() + "\\QMX_CAL.INI", kFileNumber);
    const std::string setting = platform_.files.InputField(kFileNumber);
    platform_.files.Close(kFileNumber);
    return Variant(std::floor(LeadingNumber(PieceAt(SplitAtEquals(setting), 1, setting, "the setting")))).ToInt16();
  } catch (...) {
    return kDefaultLookBack;
  }
}

}  // namespace qmx
