// The planning of working time: holidays, overtime, shorter days, and people who change their calendar.
#include "tool/dates.h"
#include "tool/working.h"

namespace orvan {
namespace {

std::string CalendarInUse(Workshop& shop) { return shop.PickValue("tsmdm140", "ccal", "ccal <> ''"); }

std::string Coming(Workshop& shop, const std::string& calendar) {
  return "ccal = '" + calendar + "' AND stdt >= '" + shop.today.DateText() + "'";
}

// A day without work in the coming weeks.
void Holiday(Workshop& shop) {
  const std::string calendar = CalendarInUse(shop);
  const std::string day = shop.PickValue("tcccp030", "stdt", Coming(shop, calendar));
  shop.Table("tcccp030").Delete("ccal = '" + calendar + "' AND stdt = '" + day + "'");
}

void Overtime(Workshop& shop) {
  const std::string calendar = CalendarInUse(shop);
  const Moment day = Later(shop.today, shop.random.Between(1, 28));
  const std::string key =
      "ccal = '" + calendar + "' AND ract = 'OVT' AND sttm = 1730 AND stdt = '" + day.DateText() + "'";
  if (calendar.empty() || !shop.Table("tcccp030").Get("ccal", key).empty()) return;
  shop.Table("tcccp030")
      .Insert({{"ccal", calendar}, {"ract", "OVT"}, {"stdt", day}, {"sttm", 1730}, {"endt", day}, {"entm", 2000}});
}

void ShorterDay(Workshop& shop) {
  shop.ChangeOne("tcccp030", {{"entm", 1415}, {"ccap", shop.random.Between(1, 400) / 4.0}},
                 Coming(shop, CalendarInUse(shop)) + " AND sttm < 1400 AND entm > 1400");
}

// The first one takes the calendar without an employee. Later every calendar has one.
void OtherCalendar(Workshop& shop) {
  std::string calendar =
      shop.PickValue("tcccp030", "ccal", "NOT EXISTS (SELECT 1 FROM tsmdm140 WHERE tsmdm140.ccal = tcccp030.ccal)");
  if (calendar.empty()) calendar = CalendarInUse(shop);
  shop.ChangeOne("tsmdm140", {{"ccal", calendar}}, "ccal <> ''");
}

void NewAvailabilityType(Workshop& shop) {
  if (const auto code = shop.FreeCode("tcccp001", "ract", "N", 2))
    shop.Table("tcccp001")
        .Insert({{"ract", *code}, {"dsca", "Kind of work " + *code}, {"ptmu", 1}, {"hrsd", 7.5}, {"avlb", 1}});
}

}  // namespace

std::vector<Action> CalendarActions() {
  return {
      {1, Holiday},
      {3, Overtime},
      {3, ShorterDay},
      {1, OtherCalendar},
      {2, [](Workshop& shop) { shop.DeleteOne("tcccp030", Coming(shop, CalendarInUse(shop))); }},
      {1, [](Workshop& shop) { shop.DeleteOneAndInsertItAgain("tcccp030"); }},
      {1, NewAvailabilityType},
      {1,
       [](Workshop& shop) {
         shop.ChangeOne("tcccp001", {{"hrsd", shop.random.Between(10, 32) / 4.0}});
       }},
      {1, [](Workshop& shop) { shop.DeleteOne("tcccp001", "ract LIKE 'N%'"); }},
      {1, [](Workshop& shop) { shop.DeleteOneAndInsertItAgain("tcccp001"); }},
  };
}

}  // namespace orvan
