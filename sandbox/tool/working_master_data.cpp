// The back office: adds and removes codes, moves people, changes prices.
#include "tool/words.h"
#include "tool/working.h"
#include "tool/world.h"

namespace orvan {
namespace {

double Rate(Workshop& shop) { return 40 + shop.random.Between(0, 120) / 4.0; }

std::string City(Workshop& shop) { return std::string(shop.random.Pick(words::kCities)); }

void NewServiceType(Workshop& shop) {
  if (const auto code = shop.FreeCode("tsmdm030", "cstp", "N", 2))
    shop.Table("tsmdm030")
        .Insert({{"cstp", *code}, {"desc", "New service " + *code}, {"proc", "STD"}, {"ract", "WRK"}});
}

void NewCenter(Workshop& shop) {
  if (const auto code = shop.FreeCode("tsmdm100", "cwoc", "SC", 3))
    shop.Table("tsmdm100")
        .Insert({{"cwoc", *code},
                 {"desc", "Service point " + City(shop)},
                 {"wctp", 2},
                 {"cmwc", shop.PickValue("tsmdm100", "cwoc")},
                 {"cwar", "WH01"},
                 {"clrt", Rate(shop)},
                 {"srtp", 1}});
}

void NewArea(Workshop& shop) {
  if (const auto code = shop.FreeCode("tsmdm105", "csar", "AN", 3))
    shop.Table("tsmdm105")
        .Insert({{"csar", *code},
                 {"desc", "Area " + City(shop)},
                 {"artp", 1},
                 {"cwoc", shop.PickValue("tsmdm100", "cwoc")},
                 {"trti", 25.0},
                 {"dist", 17.5},
                 {"ccha", 60.0},
                 {"ccur", "EUR"},
                 {"clrt", Rate(shop)}});
}

void NewSkill(Workshop& shop) {
  if (const auto code = shop.FreeCode("tsmdm130", "skll", "N", 3))
    shop.Table("tsmdm130").Insert({{"skll", *code}, {"desc", "Certificate " + *code}, {"clrt", Rate(shop)}});
}

void NewSkillOfEmployee(Workshop& shop) {
  const std::string employee = shop.PickValue("tsmdm140", "emno");
  const std::string skill = shop.PickValue("tsmdm130", "skll");
  const std::string group(shop.random.Pick(words::kProducts).group);
  const std::string key = "emno = '" + employee + "' AND skll = '" + skill + "' AND cogr = '" + group + "'";
  if (employee.empty() || skill.empty() || !shop.Table("tsmdm135").Get("emno", key).empty()) return;
  shop.Table("tsmdm135").Insert({{"emno", employee}, {"skll", skill}, {"cogr", group}, {"afct", 1.25}});
}

void NewEmployee(Workshop& shop) {
  const auto number = shop.FreeCode("tsmdm140", "emno", "N", 4);
  const auto area = shop.Pick("tsmdm105");
  if (!number || !area) return;
  shop.Table("tsmdm140")
      .Insert({{"emno", *number},
               {"desc", std::string(shop.random.Pick(words::kFirstNames)) + " " +
                            std::string(shop.random.Pick(words::kSurnames))},
               {"cwoc", shop.Table("tsmdm105").Get("cwoc", *area)},
               {"ccal", shop.PickValue("tsmdm140", "ccal", "ccal <> ''")},
               {"frmn", shop.PickValue("tsmdm140", "emno")},
               {"csar", shop.Table("tsmdm105").Get("csar", *area)},
               {"user", "user" + *number},
               {"mopd", 2.0}});
}

void NewResponseTime(Workshop& shop) {
  if (const auto code = shop.FreeCode("tsclm020", "crtc", "N", 2))
    shop.Table("tsclm020")
        .Insert({{"crtc", *code},
                 {"desc", "Agreed time " + *code},
                 {"ccal", shop.PickValue("tsmdm140", "ccal")},
                 {"rctt", shop.random.Between(1, 64) / 8.0},
                 {"enst", shop.random.Between(8, 96) / 8.0},
                 {"sltn", shop.random.Between(80, 960) / 8.0}});
}

void NewTimeScale(Workshop& shop) {
  const double minutes = shop.random.Between(4, 3600) / 4.0;  // up to 900, in quarters of a minute
  if (shop.Table("tsclm024").Get("sltt", "sltt = " + std::to_string(minutes)).empty())
    shop.Table("tsclm024").Insert({{"sltt", minutes}, {"desc", "Solved in time"}});
}

void NewAddress(Workshop& shop) {
  if (const auto code = shop.FreeCode("tccom130", "cadr", "N", 6))
    shop.Table("tccom130")
        .Insert({{"cadr", *code},
                 {"nama", PartnerName(shop.random.Next(), *code)},
                 {"namc", shop.random.Pick(words::kStreets)},
                 {"hono", std::to_string(shop.random.Between(1, 99))},
                 {"name", City(shop)},
                 {"pstc", "1000 AB"}});
}

}  // namespace

std::vector<Action> MasterDataActions() {
  return {
      {2, NewServiceType},
      {1, NewCenter},
      {1, NewArea},
      {1, NewSkill},
      {3, NewSkillOfEmployee},
      {1, NewEmployee},
      {1, NewResponseTime},
      {1, NewTimeScale},
      {3, NewAddress},
      {1,
       [](Workshop& shop) {
         shop.ChangeOne("tsmdm030", {{"desc", "Renamed on " + shop.today.DateText()}});
       }},
      {1,
       [](Workshop& shop) {
         shop.ChangeOne("tsmdm100", {{"clrt", Rate(shop)}, {"desc", "Center " + City(shop)}});
       }},
      {1,
       [](Workshop& shop) {
         shop.ChangeOne("tsmdm105", {{"trti", 35.0}, {"clrt", Rate(shop)}});
       }},
      {1,
       [](Workshop& shop) {
         shop.ChangeOne("tsmdm130", {{"clrt", Rate(shop)}});
       }},
      {2,
       [](Workshop& shop) {
         shop.ChangeOne("tsmdm135", {{"afct", shop.random.Between(5, 15) / 10.0}});
       }},
      {2,
       [](Workshop& shop) {
         shop.ChangeOne("tsmdm140", {{"csar", shop.PickValue("tsmdm105", "csar")}});
       }},
      {1,
       [](Workshop& shop) {
         shop.ChangeOne("tsclm020", {{"rctt", shop.random.Between(1, 64) / 8.0}});
       }},
      {1,
       [](Workshop& shop) {
         shop.ChangeOne("tsclm024", {{"desc", "As of " + shop.today.DateText()}});
       }},
      {3,
       [](Workshop& shop) {
         shop.ChangeOne("tccom130", {{"name", City(shop)}, {"hono", "1a"}});
       }},
      {1, [](Workshop& shop) { shop.DeleteOne("tsmdm030", "cstp LIKE 'N%'"); }},
      {1, [](Workshop& shop) { shop.DeleteOne("tsmdm100", "cwoc LIKE 'SC___'"); }},
      {1, [](Workshop& shop) { shop.DeleteOne("tsmdm105", "csar LIKE 'AN%'"); }},
      {1, [](Workshop& shop) { shop.DeleteOne("tsmdm130", "skll LIKE 'N%'"); }},
      {2, [](Workshop& shop) { shop.DeleteOne("tsmdm135"); }},
      {1, [](Workshop& shop) { shop.DeleteOne("tsmdm140", "emno LIKE 'N%'"); }},
      {1, [](Workshop& shop) { shop.DeleteOne("tsclm020", "crtc LIKE 'N%'"); }},
      {1, [](Workshop& shop) { shop.DeleteOne("tsclm024", "desc LIKE 'Solved in time'"); }},
      {2, [](Workshop& shop) { shop.DeleteOne("tccom130", "cadr LIKE 'N%'"); }},
      {1, [](Workshop& shop) { shop.DeleteOneAndInsertItAgain("tsmdm030"); }},
      {1, [](Workshop& shop) { shop.DeleteOneAndInsertItAgain("tsmdm135"); }},
      {1, [](Workshop& shop) { shop.DeleteOneAndInsertItAgain("tsclm024"); }},
      {1, [](Workshop& shop) { shop.DeleteOneAndInsertItAgain("tccom130"); }},
  };
}

}  // namespace orvan
