// The dispatcher: orders are created, planned, moved, started, finished and cancelled; customers change their machines.
#include "tool/dates.h"
#include "tool/order_status.h"
#include "tool/words.h"
#include "tool/working.h"
#include "tool/world.h"

namespace orvan {
namespace {

std::string HasStatus(int status) { return "osta = " + std::to_string(status); }

Moment TimeToday(Workshop& shop) { return At(shop.today, shop.random.Between(7, 17), shop.random.Between(0, 3) * 15); }

std::string OfOrder(const std::string& order) { return "orno = '" + order + "'"; }

void NewOrder(Workshop& shop) {
  const auto number = shop.FreeCode("tssoc200", "orno", "SN", 7);
  const auto site = shop.Pick("tscfg220");
  if (!number || !site) return;
  const auto of = [&](const char* column) { return shop.Table("tscfg220").Get(column, *site); };
  const std::string partner = of("ofbp");
  shop.Table("tssoc200")
      .Insert({{"orno", *number},
               {"ccfg", of("ccfg")},
               {"ofbp", partner},
               {"stna", "Customer " + partner},
               {"lcad", of("cadr")},
               {"ordt", TimeToday(shop)},
               {"osta", order_status::kFree},
               {"cwoc", of("cwoc")},
               {"csar", of("csar")},
               {"blyn", kNo},
               {"ityn", kNo},
               {"ordu", 1.5},
               {"otim", kNo},
               {"appo", shop.random.Between(0, 2)},
               {"rsrp", kNo},
               {"stbp", partner},
               {"emer", shop.random.Chance(10) ? kYes : kNo}});
  shop.Table("tssoc210")
      .Insert({{"orno", *number},
               {"acln", 10},
               {"desc", shop.random.Pick(words::kFaults).description},
               {"cstp", shop.PickValue("tsmdm030", "cstp")},
               {"ccfg", of("ccfg")},
               {"asta", order_status::kFree},
               {"acdu", 1.5},
               {"appo", kNo}});
}

void PlanOrder(Workshop& shop) {
  const std::string order = shop.PickValue("tssoc200", "orno", HasStatus(order_status::kFree));
  if (order.empty()) return;
  const std::string engineer = shop.PickValue("tsmdm140", "emno");
  const Moment start = Later(TimeToday(shop), shop.random.Between(0, 10));
  const Moment finish = Later(start, 0, 90);
  shop.Table("tssoc200")
      .Update(OfOrder(order),
              {{"osta", order_status::kPlanned}, {"emno", engineer}, {"pstm", start}, {"pftm", finish}});
  shop.Table("tssoc210").Update(OfOrder(order), {{"asta", order_status::kPlanned}, {"pstm", start}, {"pftm", finish}});
  if (shop.Table("tssoc205").Get("orno", OfOrder(order)).empty())
    shop.Table("tssoc205").Insert({{"orno", order}, {"line", 1}, {"emno", engineer}, {"acln", 10}});
}

void MoveOrder(Workshop& shop) {
  const Moment start = Later(TimeToday(shop), shop.random.Between(1, 14));
  shop.ChangeOne("tssoc200", {{"pstm", start}, {"pftm", Later(start, 0, 120)}}, HasStatus(order_status::kPlanned));
}

void StartOrder(Workshop& shop) {
  const std::string order = shop.PickValue("tssoc200", "orno", HasStatus(order_status::kPlanned));
  const Moment now = TimeToday(shop);
  shop.Table("tssoc200")
      .Update(OfOrder(order), {{"osta", order_status::kInProcess},
                               {"ract", Later(now, 0, -60)},
                               {"tstm", Later(now, 0, -20)},
                               {"astm", now}});
  shop.Table("tssoc210").Update(OfOrder(order), {{"asta", order_status::kInProcess}, {"astm", now}});
}

void FinishOrder(Workshop& shop) {
  const std::string order = shop.PickValue("tssoc200", "orno", HasStatus(order_status::kInProcess));
  const Moment now = TimeToday(shop);
  shop.Table("tssoc200").Update(OfOrder(order), {{"osta", order_status::kCompleted}, {"ityn", kNo}, {"aftm", now}});
  shop.Table("tssoc210").Update(OfOrder(order), {{"asta", order_status::kCompleted}, {"cstn", "DONE"}, {"aftm", now}});
}

void InterruptOrder(Workshop& shop) {
  shop.ChangeOne("tssoc200", {{"ityn", kYes}, {"crit", "PART"}}, HasStatus(order_status::kInProcess));
}

void BlockOrder(Workshop& shop) { shop.ChangeOne("tssoc200", {{"blyn", kYes}}, HasStatus(order_status::kFree)); }

// A cancelled order loses its planned time and its engineer.
void CancelOrder(Workshop& shop) {
  const std::string order = shop.PickValue("tssoc200", "orno", HasStatus(order_status::kPlanned));
  shop.Table("tssoc200")
      .Update(OfOrder(order),
              {{"osta", order_status::kCancelled}, {"emno", ""}, {"pstm", std::nullopt}, {"pftm", std::nullopt}});
  shop.Table("tssoc205").Delete(OfOrder(order));
}

void DeleteOrder(Workshop& shop) {
  const std::string order = shop.PickValue("tssoc200", "orno", HasStatus(order_status::kCancelled));
  for (const char* code : {"tssoc205", "tssoc210", "tssoc200"}) shop.Table(code).Delete(OfOrder(order));
}

void SoldToSomebodyElse(Workshop& shop) {
  const std::string partner = Code("BP", shop.random.Between(1, 99), 5);
  shop.ChangeOne("tssoc200", {{"ofbp", partner}, {"stna", "Customer " + partner}});
}

void NewObject(Workshop& shop) {
  const std::string site = shop.PickValue("tscfg220", "ccfg");
  const auto object = shop.FreeCode("tscfg200", "crob", "NEW-", 5);
  if (site.empty() || !object) return;
  const auto& product = shop.random.Pick(words::kProducts);
  shop.Table("tscfg200")
      .Insert({{"ccfg", site},
               {"crob", *object},
               {"oseq", shop.random.Between(1, 9)},
               {"desc", product.name},
               {"cogr", product.group},
               {"manu", shop.random.Pick(words::kMakers)}});
}

void NewSite(Workshop& shop) {
  if (const auto code = shop.FreeCode("tscfg220", "ccfg", "CN", 5))
    shop.Table("tscfg220")
        .Insert({{"ccfg", *code},
                 {"desc", "New installation"},
                 {"ofbp", Code("BP", shop.random.Between(1, 99), 5)},
                 {"cwoc", shop.PickValue("tsmdm100", "cwoc")},
                 {"csar", shop.PickValue("tsmdm105", "csar")},
                 {"tecr", shop.PickValue("tsmdm140", "emno")},
                 {"dist", 12.5},
                 {"cadr", shop.PickValue("tccom130", "cadr")}});
}

void NewPlannedActivity(Workshop& shop) {
  const std::string site = shop.PickValue("tscfg220", "ccfg");
  const std::string key = "ccfg = '" + site + "' AND crac = 'ACT900'";
  if (site.empty() || !shop.Table("tsspc200").Get("ccfg", key).empty()) return;
  const Moment earliest = Later(TimeToday(shop), shop.random.Between(5, 60));
  shop.Table("tsspc200")
      .Insert({{"ccfg", site},
               {"crac", "ACT900"},
               {"aseq", 10},
               {"desc", "Extra inspection"},
               {"cstp", shop.PickValue("tsmdm030", "cstp")},
               {"esct", earliest},
               {"lfct", Later(earliest, 30)},
               {"adur", 0.75},
               {"appo", kNo},
               {"stat", order_status::kFree}});
}

void PlanActivity(Workshop& shop) {
  const Moment start = Later(TimeToday(shop), shop.random.Between(1, 30));
  shop.ChangeOne("tsspc200",
                 {{"psct", start}, {"pfct", Later(start, 0, 60)}, {"orno", shop.PickValue("tssoc200", "orno")}});
}

}  // namespace

std::vector<Action> OrderActions() {
  return {
      {6, NewOrder},
      {5, PlanOrder},
      {3, MoveOrder},
      {4, StartOrder},
      {3, FinishOrder},
      {2, InterruptOrder},
      {1, BlockOrder},
      {1, CancelOrder},
      {1, DeleteOrder},
      {2, SoldToSomebodyElse},
      {2, NewObject},
      {1, NewSite},
      {2, NewPlannedActivity},
      {2, PlanActivity},
      {2,
       [](Workshop& shop) {
         shop.ChangeOne("tscfg200", {{"manu", shop.random.Pick(words::kMakers)}});
       }},
      {1,
       [](Workshop& shop) {
         shop.ChangeOne("tscfg220", {{"dist", shop.random.Between(5, 900) / 10.0}});
       }},
      {1,
       [](Workshop& shop) {
         shop.ChangeOne("tssoc205", {{"emno", shop.PickValue("tsmdm140", "emno")}});
       }},
      {1, [](Workshop& shop) { shop.DeleteOne("tscfg200"); }},
      {1, [](Workshop& shop) { shop.DeleteOne("tscfg220", "ccfg LIKE 'CN%'"); }},
      {1, [](Workshop& shop) { shop.DeleteOne("tsspc200"); }},
      {1, [](Workshop& shop) { shop.DeleteOneAndInsertItAgain("tssoc200"); }},
      {1, [](Workshop& shop) { shop.DeleteOneAndInsertItAgain("tscfg200"); }},
      {1, [](Workshop& shop) { shop.DeleteOneAndInsertItAgain("tsspc200"); }},
  };
}

}  // namespace orvan
