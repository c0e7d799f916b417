// Service orders, their activities and engineers, made one after the other, so that a million of them need no memory.
//
// Each order has its own random numbers, so the order, its activities and its engineers agree in all three tables.
#include <algorithm>

#include "tool/dates.h"
#include "tool/making.h"
#include "tool/order_status.h"
#include "tool/words.h"

namespace orvan {
namespace {

using namespace order_status;

constexpr int kStatuses[] = {kFree,      kPlanned,   kPlanned,   kReleased,  kReleased,
                             kInProcess, kCompleted, kCompleted, kCompleted, kCancelled};

// Mostly yes or no, but the ERP's field allows other codes too.
int YesOrNo(Random& random, int percentYes) {
  if (random.Chance(3)) return random.Between(0, 1) * 3;
  return random.Chance(percentYes) ? kYes : kNo;
}

struct Order {
  std::string number;
  const Installation* installation;
  const Employee* engineer;
  int status;
  Moment ordered;
  Moment start;
  int minutes;  // planned
  int activities;
  Random random;

  std::optional<Moment> From(int reached, const Moment& moment) const {
    return status >= reached ? std::optional(moment) : std::nullopt;
  }
};

Order Draw(const World& world, int index) {
  Random random(world.plan.seed + static_cast<std::uint64_t>(index), "order");
  const Moment ordered =
      At(Later(world.plan.today, -random.Between(0, 60)), random.Between(0, 23), random.Between(0, 59));
  const int status = random.Pick(kStatuses);
  const int soon = status >= kInProcess ? 1 : 10;
  Moment start = At(Later(ordered, random.Between(0, soon)), random.Between(6, 20), random.Between(0, 3) * 15);
  // A night in which the clocks change: it repeats an hour, or lacks one.
  if (index % 50 == 0) start = At(ClockChange(world.plan.today.year, index % 100 == 0 ? 10 : 3), 1, 30);
  const int minutes = random.Between(2, 24) * 15;
  const int activities = world.plan.sizes.activities > 0 ? random.Between(1, world.plan.sizes.activities) : 0;
  return {Code("SO", index, 7),
          &random.Pick(world.installations),
          &random.Pick(world.employees),
          status,
          ordered,
          start,
          minutes,
          activities,
          random};
}

void ServiceOrders(const World& world, TableWriter& table) {
  for (int i = 1; i <= world.plan.sizes.orders; ++i) {
    Order order = Draw(world, i);
    Random& random = order.random;
    const Installation& at = *order.installation;
    const bool interrupted = random.Chance(4);
    table.Insert({{"orno", order.number},
                  {"ccfg", at.code},
                  {"ofbp", at.partner},
                  {"stna", at.partnerName},
                  {"lcad", at.address},
                  {"cprj", random.Chance(10) ? Code("PRJ", random.Between(1, 30), 3) : std::string()},
                  {"ordt", order.ordered},
                  {"osta", order.status},
                  {"cwoc", at.center},
                  {"csar", at.area},
                  {"emno", order.status >= kPlanned ? order.engineer->number : std::string()},
                  {"blyn", YesOrNo(random, 5)},
                  {"ityn", interrupted ? kYes : kNo},
                  {"crit", interrupted ? "PART" : ""},
                  {"ordu", order.minutes / 60.0},
                  {"tvdu", random.Between(1, 6) / 4.0},
                  {"pstm", order.From(kPlanned, order.start)},
                  {"pftm", order.From(kPlanned, Later(order.start, 0, order.minutes))},
                  {"estm", random.Chance(70) ? std::optional(Later(order.ordered, 0, 60)) : std::nullopt},
                  {"lftm", random.Chance(70) ? std::optional(Later(order.ordered, 21)) : std::nullopt},
                  {"otim", YesOrNo(random, 10)},
                  {"appo", YesOrNo(random, 40)},
                  {"rsrp", YesOrNo(random, 20)},
                  {"tstm", order.From(kInProcess, Later(order.start, 0, -30))},
                  {"astm", order.From(kInProcess, order.start)},
                  {"aftm", order.From(kCompleted, Later(order.start, 0, order.minutes + 10))},
                  {"csco", random.Chance(50) ? Code("CT", random.Between(1, 200), 4) : std::string()},
                  {"csqu", random.Chance(10) ? Code("QU", random.Between(1, 200), 4) : std::string()},
                  {"stbp", at.partner},
                  {"emer", YesOrNo(random, 8)},
                  {"minu", random.Between(0, 4) * 15},
                  {"ract", order.From(kReleased, Later(order.start, 0, -120))}});
  }
}

void Activities(const World& world, TableWriter& table) {
  for (int i = 1; i <= world.plan.sizes.orders; ++i) {
    Order order = Draw(world, i);
    Random& random = order.random;
    for (int line = 1; line <= order.activities; ++line) {
      const auto& fault = random.Pick(words::kFaults);
      const Moment start = Later(order.start, 0, (line - 1) * order.minutes / order.activities);
      const Moment finish = Later(order.start, 0, line * order.minutes / order.activities);
      table.Insert({{"orno", order.number},
                    {"acln", line * 10},
                    {"crac", Code("ACT", random.Between(1, 40), 3)},
                    {"desc", fault.description},
                    {"cstp", random.Pick(world.serviceTypes)},
                    {"cagr", "REPAIR"},
                    {"ccfg", order.installation->code},
                    {"crob", random.Pick(words::kProducts).group},
                    {"oseq", random.Between(1, order.installation->objects)},
                    {"ccll", random.Chance(40) ? Code("CL", random.Between(1, 9999), 6) : std::string()},
                    {"crtc", random.Chance(50) ? "R04" : "R24"},
                    {"prpr", random.Between(1, 5)},
                    {"cupr", random.Between(1, 5)},
                    {"obpr", random.Between(1, 5)},
                    {"cprl", fault.code},
                    {"cstn", order.status >= kCompleted ? "DONE" : ""},
                    {"asta", order.status},
                    {"skla", random.Pick(world.skills)},
                    {"sklb", random.Chance(30) ? random.Pick(world.skills) : std::string()},
                    {"acdu", order.minutes / 60.0 / order.activities},
                    {"appo", YesOrNo(random, 40)},
                    {"pstm", order.From(kPlanned, start)},
                    {"pftm", order.From(kPlanned, finish)},
                    {"lftm", random.Chance(70) ? std::optional(Later(order.ordered, 21)) : std::nullopt},
                    {"astm", order.From(kInProcess, start)},
                    {"aftm", order.From(kCompleted, finish)}});
    }
  }
}

void Engineers(const World& world, TableWriter& table) {
  for (int i = 1; i <= world.plan.sizes.orders; ++i) {
    Order order = Draw(world, i);
    if (order.status < kPlanned || order.activities == 0) continue;
    const int engineers = order.random.Chance(20) ? 2 : 1;
    for (int line = 1; line <= engineers; ++line)
      table.Insert({{"orno", order.number},
                    {"line", line},
                    {"emno", line == 1 ? order.engineer->number : order.random.Pick(world.employees).number},
                    {"acln", order.random.Between(1, order.activities) * 10}});
  }
}

}  // namespace

std::vector<Maker> OrderMakers() {
  return {{"tssoc200", ServiceOrders}, {"tssoc210", Activities}, {"tssoc205", Engineers}};
}

}  // namespace orvan
