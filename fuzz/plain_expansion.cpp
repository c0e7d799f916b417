#include "fuzz/plain_expansion.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "platform/error.h"
#include "tests/calendar/linked_list_day.h"

namespace qmx::fuzz {
namespace {

constexpr std::int64_t kDay = 86400;

// The days of one period, in the order in which they were met.
struct Period {
  std::vector<std::pair<DateTime, test::LinkedListDay>> days;

  void Add(DateTime date, std::int32_t sttm, std::int32_t entm) {
    for (auto& [known, intervals] : days) {
      if (known != date) continue;
      intervals.CheckSubAndInsertModify(sttm, entm);
      intervals.ReallignSubArray();
      return;
    }
    days.emplace_back(date, test::LinkedListDay(sttm, entm));
  }
};

// Days from start to end, both included; the nearest whole number, halves to even.
std::int64_t DaysOf(const PlainRecord& record) {
  const auto seconds = static_cast<double>(record.end.Seconds() - record.start.Seconds() + kDay);
  return std::lrint(seconds / static_cast<double>(kDay));
}

DateTime At(DateTime date, std::int32_t time, bool isEnd) {
  const auto hours = static_cast<std::int64_t>(std::floor(time / 100.0));
  if (isEnd && hours == 24) return date.PlusDays(1);
  return date.PlusTime(hours, time - 100 * hours, 0);
}

std::string Lines(const Period& period) {
  std::string lines;
  for (const auto& [date, intervals] : period.days) {
    for (const auto& interval : intervals.InOrder()) {
      lines += At(date, interval.stime, false).ToText() + " > " + At(date, interval.etime, true).ToText() + "\n";
    }
  }
  return lines;
}

// Returns the error that ends the calendar, or 0.
std::int32_t Spread(const std::vector<PlainRecord>& records, Period& period) {
  for (const PlainRecord& record : records) {
    if (!record.hasEnd) return errors::kInvalidUseOfNull;
    const std::int64_t count = DaysOf(record);
    const auto isTooLarge = [](std::int32_t time) { return time < INT16_MIN || time > INT16_MAX; };
    if (count > 0 && (isTooLarge(record.sttm) || isTooLarge(record.entm))) return errors::kOverflow;
    for (std::int64_t day = 0; day < count; ++day) {
      period.Add(record.start.PlusDays(day).DatePart(), record.sttm, record.entm);
    }
  }
  return 0;
}

// Returns the error that ends the calendar, or 0.
std::int32_t ExpandOne(std::vector<PlainRecord> records, std::string& lines) {
  if (records.empty()) return 0;
  std::stable_sort(records.begin(), records.end(), [](const PlainRecord& one, const PlainRecord& other) {
    return std::pair(one.start, one.sttm) < std::pair(other.start, other.sttm);
  });
  for (DateTime after = records[0].start.PlusDays(-1);; after = after.PlusDays(100)) {
    std::vector<PlainRecord> starting;
    for (const PlainRecord& record : records) {
      if (record.start > after && record.start <= after.PlusDays(100)) starting.push_back(record);
    }
    if (starting.empty()) return 0;
    Period period;
    if (const std::int32_t error = Spread(starting, period); error != 0) return error;
    lines += Lines(period);
  }
}

}  // namespace

PlainExpansion ExpandPlainly(const std::vector<std::string>& calendars, const std::vector<PlainRecord>& records) {
  PlainExpansion expansion;
  for (const std::string& ccal : calendars) {
    std::vector<PlainRecord> own;
    std::copy_if(records.begin(), records.end(), std::back_inserter(own),
                 [&](const PlainRecord& record) { return record.ccal == ccal; });
    expansion.begun.insert(ccal);
    expansion.error = ExpandOne(own, expansion.rows[ccal]);
    if (expansion.error != 0) break;
  }
  return expansion;
}

}  // namespace qmx::fuzz
