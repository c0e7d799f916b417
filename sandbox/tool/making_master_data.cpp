// Service types, centres, areas, employees and their skills, addresses, response times and priority time scales.
#include "tool/making.h"
#include "tool/words.h"

namespace orvan {
namespace {

template <class Known>
std::string Description(const Known& known, std::size_t place, std::string_view otherwise) {
  if (place < std::size(known)) return std::string(known[place].description);
  return std::string(otherwise) + ' ' + std::to_string(place + 1);
}

void ServiceTypes(const World& world, TableWriter& table) {
  Random random = world.Dice("tsmdm030");
  constexpr std::string_view kProcedures[] = {"STD", "EXT", "QCK"};
  constexpr std::string_view kAvailability[] = {"WRK", "OVT", "STB"};
  for (std::size_t i = 0; i < world.serviceTypes.size(); ++i)
    table.Insert({{"cstp", world.serviceTypes[i]},
                  {"desc", Description(words::kServiceTypes, i, "Service type")},
                  {"proc", random.Pick(kProcedures)},
                  {"ract", random.Pick(kAvailability)}});
}

void ServiceCenters(const World& world, TableWriter& table) {
  Random random = world.Dice("tsmdm100");
  for (std::size_t i = 0; i < world.centers.size(); ++i)
    table.Insert({{"cwoc", world.centers[i]},
                  {"desc", "Service center " + std::string(random.Pick(words::kCities))},
                  {"wctp", i == 0 ? 1 : 2},
                  {"cmwc", world.centers[0]},
                  {"cwar", Code("WH", static_cast<int>(i) + 1, 2)},
                  {"clrt", 40 + random.Between(0, 80) / 4.0},
                  {"srtp", random.Between(1, 3)},
                  {"srep", PartnerName(world.plan.seed, world.centers[i])}});
}

void ServiceAreas(const World& world, TableWriter& table) {
  Random random = world.Dice("tsmdm105");
  for (const Area& area : world.areas)
    table.Insert({{"csar", area.code},
                  {"desc", "Area " + area.city},
                  {"artp", random.Between(1, 2)},
                  {"cmsa", world.areas[0].code},
                  {"cwoc", area.center},
                  {"cwar", Code("WH", random.Between(1, static_cast<int>(world.centers.size())), 2)},
                  {"trti", random.Between(2, 12) * 5.0},
                  {"dist", random.Between(10, 600) / 10.0},
                  {"ccha", random.Between(30, 120) / 1.0},
                  {"ccur", random.Chance(90) ? "EUR" : "CHF"},
                  {"clrt", 40 + random.Between(0, 80) / 4.0}});
}

void Skills(const World& world, TableWriter& table) {
  Random random = world.Dice("tsmdm130");
  for (std::size_t i = 0; i < world.skills.size(); ++i)
    table.Insert({{"skll", world.skills[i]},
                  {"desc", Description(words::kSkills, i, "Skill")},
                  {"clrt", 35 + random.Between(0, 120) / 4.0}});
}

void SkillsByEmployee(const World& world, TableWriter& table) {
  Random random = world.Dice("tsmdm135");
  for (const Employee& employee : world.employees) {
    // Neighbouring skills, so none is drawn twice.
    const auto first = static_cast<std::size_t>(random.Between(0, static_cast<int>(world.skills.size()) - 1));
    const int count = random.Between(1, 3);
    for (std::size_t i = first; i < first + static_cast<std::size_t>(count) && i < world.skills.size(); ++i)
      table.Insert({{"emno", employee.number},
                    {"skll", world.skills[i]},
                    {"cogr", random.Pick(words::kProducts).group},
                    {"afct", random.Between(5, 15) / 10.0}});
  }
}

void ServiceEmployees(const World& world, TableWriter& table) {
  Random random = world.Dice("tsmdm140");
  for (const Employee& employee : world.employees)
    table.Insert({{"emno", employee.number},
                  {"desc", employee.name},
                  {"cwoc", employee.center},
                  {"ccal", employee.calendar},
                  {"frmn", employee.foreman},
                  {"csar", employee.area},
                  {"ccar", Code("CAR", random.Between(1, 99), 2)},
                  {"user", "user" + employee.number.substr(1)},
                  {"mopd", random.Between(0, 8) / 2.0}});
}

void ResponseTimes(const World& world, TableWriter& table) {
  struct Response {
    std::string_view code, description;
    double reaction, start, finish;
  };
  constexpr Response kResponses[] = {
      {"R01", "Within one hour", 1, 1.5, 4},    {"R02", "Within two hours", 2.125, 2.375, 6},
      {"R04", "Within four hours", 4, 4.5, 12}, {"R08", "The same day", 8, 8, 16.25},
      {"R24", "The next day", 24, 25.005, 48},  {"R72", "Within three days", 72, 72, 120},
  };
  std::size_t i = 0;
  for (const Response& response : kResponses)
    table.Insert({{"crtc", response.code},
                  {"desc", response.description},
                  {"ccal", world.calendars[i++ % world.calendars.size()]},
                  {"rctt", response.reaction},
                  {"enst", response.start},
                  {"sltn", response.finish}});
}

void PriorityTimeScales(const World&, TableWriter& table) {
  for (const double minutes : {15.0, 30.0, 45.5, 90.5, 120.0, 240.25, 480.0, 960.75})
    table.Insert(
        {{"sltt", minutes}, {"desc", "Solved within " + std::to_string(static_cast<int>(minutes)) + " minutes"}});
}

void Addresses(const World& world, TableWriter& table) {
  Random random = world.Dice("tccom130");
  for (int i = 1; i <= world.plan.sizes.addresses; ++i) {
    const std::string code = Code("A", i, 6);
    std::string number = std::to_string(random.Between(1, 250));
    if (random.Chance(10)) number += 'a';
    table.Insert({{"cadr", code},
                  {"nama", PartnerName(world.plan.seed, code)},
                  {"namc", random.Pick(words::kStreets)},
                  {"hono", number},
                  {"name", random.Pick(words::kCities)},
                  {"pstc", std::to_string(random.Between(1000, 9999)) + " QX"}});
  }
}

}  // namespace

std::vector<Maker> MasterDataMakers() {
  return {{"tsmdm030", ServiceTypes},  {"tsmdm100", ServiceCenters},     {"tsmdm105", ServiceAreas},
          {"tsmdm130", Skills},        {"tsmdm135", SkillsByEmployee},   {"tsmdm140", ServiceEmployees},
          {"tsclm020", ResponseTimes}, {"tsclm024", PriorityTimeScales}, {"tccom130", Addresses}};
}

}  // namespace orvan
