// QMX_CAL.INI with any content: the look-back that a plain reader finds, or 60. The same bytes are the fields of an
// ERP's date, which the engine converts beside it.
#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>

#include "fuzz/bare_platform.h"
#include "fuzz/input.h"
#include "fuzz/plain_dates.h"
#include "fuzz/plain_numbers.h"
#include "fuzz/raised.h"
#include "fuzz/require.h"
#include "platform/system/text_files.h"
#include "tests/support/data_copy_inside.h"
#include "tests/support/ignored_events.h"
#include "tests/support/temp_folder.h"

namespace qmx::fuzz {
namespace {

constexpr std::int16_t kDefault = 60;

std::string WithoutBlanks(std::string text) {
  while (!text.empty() && text.back() == ' ') text.pop_back();
  while (!text.empty() && text.front() == ' ') text.erase(0, 1);
  return text;
}

// Up to the first comma or line end outside quotes, without the quotes around it.
std::string FirstField(const std::string& content) {
  std::string field;
  bool isQuoted = false;
  for (const char c : content) {
    if (!isQuoted && (c == ',' || c == '\r' || c == '\n')) break;
    if (c == '"') isQuoted = !isQuoted;
    field += c;
  }
  while (!field.empty() && field.front() == ' ') field.erase(0, 1);
  std::string closed = field;
  while (!closed.empty() && closed.back() == ' ') closed.pop_back();
  const bool isEnclosed = closed.size() > 1 && closed.front() == '"' && closed.back() == '"';
  return isEnclosed ? closed.substr(1, closed.size() - 2) : field;
}

// The number at the beginning; 0 if there is none.
double LeadingNumber(const std::string& text) {
  for (std::size_t length = text.size(); length > 0; --length) {
    const std::string start = text.substr(0, length);
    if (start.back() != ' ' && start.back() != '\t' && PlainNumber(start)) return *PlainNumber(start);
  }
  return 0;
}

std::int16_t PlainLookBack(const std::string& content) {
  const std::string field = FirstField(content);
  const std::size_t equals = field.find('=');
  if (content.empty() || equals == std::string::npos) return kDefault;
  const std::string rest = field.substr(equals + 1);
  const double days = std::floor(LeadingNumber(WithoutBlanks(rest.substr(0, rest.find('=')))));
  return days >= -32768 && days <= 32767 ? static_cast<std::int16_t>(days) : kDefault;
}

// A date object of the ERP that has these fields, in its own counting.
class ErpDate final : public Dispatch {
 public:
  explicit ErpDate(const std::array<std::int32_t, 6>& fields) : fields_(fields) {}
  Variant Invoke(const Member& member, std::span<const Argument>) override {
    constexpr std::array kNames = {"getyear", "getMonth", "getDate", "getHours", "getMinutes", "getSeconds"};
    for (std::size_t field = 0; field < kNames.size(); ++field) {
      if (member.Name() == kNames[field]) return fields_[field];
    }
    Fail("a date object is asked for " + std::string(member.Name()));
  }

 private:
  std::array<std::int32_t, 6> fields_;
};

void ConvertsDates(test::DataCopyInside inside, Input& input) {
  const bool isWide = input.Chance(20);
  std::array<std::int32_t, 6> fields{};
  bool fits = true;
  for (std::int32_t& field : fields) {
    field = isWide ? input.Next<std::int32_t>() : input.Next<std::int8_t>();
    fits = fits && field >= INT16_MIN && field <= INT16_MAX;
  }
  const auto& [year, month, day, hours, minutes, seconds] = fields;
  const bool isNone = year == 0 && month == 0;
  bool isDate = false;
  const Object date(std::make_shared<ErpDate>(fields));
  const std::int32_t raised = NumberRaised([&] { isDate = inside.DateObjectToDate(date); });
  if (isNone) return Require(raised == 0 && !isDate && inside.ConvertedDate() == Variant(std::int16_t{0}), "no date");
  const std::int64_t zero = DayCount(Rule::Gregorian, {1899, 11, 30});
  const std::int64_t count = DayCount(Rule::Gregorian, {year + std::int64_t{1900}, month, day}) - zero;
  const bool isWithin = count >= -657434 && count <= 2958465;  // 0100-01-01 to 9999-12-31
  Require(raised == (fits && isWithin ? 0 : errors::kOverflow), "whether an ERP's date is within the range");
  if (raised != 0) return;
  const std::int64_t expected = count * 86400 + hours * std::int64_t{3600} + minutes * std::int64_t{60} + seconds;
  Require(isDate && inside.ConvertedDate() == Variant(DateTime::FromSeconds(expected)), "an ERP's date");
}

void GivesTheTime(test::DataCopyInside inside, BarePlatform& bare) {
  const DateTime now = bare.clock.now;
  inside.NowAsDateObject();
  std::string set;
  for (const std::string& text : bare.components.texts) set += text + ' ';
  char expected[80];
  std::snprintf(expected, sizeof expected, "%d %d %d %d %d %d ", now.Day(), now.Month() - 1, now.Year() - 1900,
                now.Hour(), now.Minute(), now.Second());
  RequireSame(set, expected, "the fields of a date object for now");
}

}  // namespace
}  // namespace qmx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmx;
  using namespace qmx::fuzz;
  static const test::TempFolder& folder = *new test::TempFolder(test::TempFolder::Place::InMemory);
  std::filesystem::current_path(folder.Path());
  const std::string content = Input(data, size).Rest();
  test::WriteFile("QMX_CAL.INI", content);
  SystemTextFiles files;
  BarePlatform bare(files, {});
  modDeclarations declarations;
  test::IgnoredEvents events;
  clsDataCopy engine(bare.platform, declarations, events);
  const std::int16_t days = test::DataCopyInside{engine}.ReadCalendarLookBack();
  RequireSame(std::to_string(days), std::to_string(PlainLookBack(content)), "the look-back of " + Shown(content));
  // Only a file that has nothing to read stays open.
  const std::int32_t raised = NumberRaised([&] { files.OpenForAppend("log", 1); });
  Require(raised == (content.empty() ? errors::kFileAlreadyOpen : 0), "whether file 1 stays open");

  Input input(data, size);
  ConvertsDates({engine}, input);
  GivesTheTime({engine}, bare);
  return 0;
}
