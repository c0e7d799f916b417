// Availability types, and the actual calendars: each calendar is one of seven ways to work, taken in turn.
#include "tool/dates.h"
#include "tool/making.h"

namespace orvan {
namespace {

constexpr int kDaysBack = 90;

struct Shift {
  std::string_view type;
  int from, to;  // hours * 100 + minutes
};

bool IsHoliday(const Moment& day) {
  return (day.month == 1 && day.day == 1) || (day.month == 5 && day.day == 1) ||
         (day.month == 12 && (day.day == 25 || day.day == 26));
}

double Hours(int from, int to) {
  const auto minutes = [](int time) { return time / 100 * 60 + time % 100; };
  return (minutes(to) - minutes(from)) / 60.0;
}

// One way to work: the shifts that begin on a day, and for how many days each of them continues.
struct Way {
  std::vector<Shift> (*shifts)(const Moment& day, int daysFromStart);
  int runsOn = 0;
};

bool Working(const Moment& day) { return IsWorkday(day) && !IsHoliday(day); }

const Way kWays[] = {
    // A day with a break.
    {[](const Moment& day, int) -> std::vector<Shift> {
      if (!Working(day)) return {};
      return {{"WRK", 800, 1200}, {"WRK", 1245, 1700}};
    }},
    // Early and late shift, which touch.
    {[](const Moment& day, int) -> std::vector<Shift> {
      if (!Working(day)) return {};
      return {{"WRK", 600, 1400}, {"WRK", 1400, 2200}};
    }},
    // The night: up to midnight, and from midnight on.
    {[](const Moment& day, int) -> std::vector<Shift> {
      std::vector<Shift> shifts;
      if (Working(Later(day, -1))) shifts.push_back({"NGT", 0, 600});
      if (Working(day)) shifts.push_back({"NGT", 2200, 2400});
      return shifts;
    }},
    // Standby from Saturday to Sunday, one record for both days.
    {[](const Moment& day, int) -> std::vector<Shift> {
       if (Weekday(day) != 5) return {};
       return {{"STB", 900, 1800}};
     },
     1},
    // Whole weeks, one record from Monday to Friday, with a project's pause of 120 days.
    {[](const Moment& day, int daysFromStart) -> std::vector<Shift> {
       const bool pause = daysFromStart >= kDaysBack + 30 && daysFromStart < kDaysBack + 150;
       if (Weekday(day) != 0 || pause) return {};
       return {{"WRK", 730, 1600}};
     },
     4},
    // Work, overtime that overlaps it, and standby until midnight.
    {[](const Moment& day, int) -> std::vector<Shift> {
      if (!Working(day)) return {};
      return {{"WRK", 800, 1700}, {"OVT", 1630, 1900}, {"STB", 1900, 2400}};
    }},
    // Four short days.
    {[](const Moment& day, int) -> std::vector<Shift> {
      if (!Working(day) || Weekday(day) == 2) return {};
      return {{"WRK", 915, 1445}};
    }},
};

void ActualCalendars(const World& world, TableWriter& table) {
  const Moment first = Later(world.plan.today, -kDaysBack);
  for (std::size_t i = 0; i < world.calendars.size(); ++i) {
    const Way& way = kWays[i % std::size(kWays)];
    double cumulative = 0;
    for (int days = 0; days < world.plan.sizes.calendarDays; ++days) {
      const Moment day = Later(first, days);
      for (const Shift& shift : way.shifts(day, days)) {
        cumulative += Hours(shift.from, shift.to) * (way.runsOn + 1);
        table.Insert({{"ccal", world.calendars[i]},
                      {"ract", shift.type},
                      {"stdt", day},
                      {"sttm", shift.from},
                      {"endt", Later(day, way.runsOn)},
                      {"entm", shift.to},
                      {"cutm", cumulative},
                      {"ccap", cumulative * 0.85}});
      }
    }
  }
}

void AvailabilityTypes(const World&, TableWriter& table) {
  table.Insert({{"ract", "WRK"}, {"dsca", "Regular work"}, {"ptmu", 1}, {"hrsd", 8.0}, {"avlb", 1}});
  table.Insert({{"ract", "NGT"}, {"dsca", "Night work"}, {"ptmu", 1}, {"hrsd", 8.0}, {"avlb", 1}});
  table.Insert({{"ract", "OVT"}, {"dsca", "Overtime"}, {"ptmu", 1}, {"hrsd", 2.5}, {"avlb", 1}});
  table.Insert({{"ract", "STB"}, {"dsca", "Standby"}, {"ptmu", 2}, {"hrsd", 24.0}, {"avlb", 1}});
  table.Insert({{"ract", "TRN"}, {"dsca", "Training"}, {"ptmu", 1}, {"hrsd", 7.5}, {"avlb", 2}});
  table.Insert({{"ract", "HOL"}, {"dsca", "Holiday"}, {"ptmu", 2}, {"hrsd", 0.0}, {"avlb", 2}});
}

}  // namespace

std::vector<Maker> CalendarMakers() { return {{"tcccp030", ActualCalendars}, {"tcccp001", AvailabilityTypes}}; }

}  // namespace orvan
