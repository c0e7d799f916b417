// The customers' configurations, the objects in them, and the activities planned on those.
#include "tool/dates.h"
#include "tool/making.h"
#include "tool/words.h"

namespace orvan {
namespace {

void Configurations(const World& world, TableWriter& table) {
  Random random = world.Dice("tscfg220");
  for (const Installation& installation : world.installations)
    table.Insert({{"ccfg", installation.code},
                  {"desc", installation.description},
                  {"ofbp", installation.partner},
                  {"cwoc", installation.center},
                  {"csar", installation.area},
                  {"tecr", installation.engineer},
                  {"teca", installation.engineer},
                  {"tecb", random.Pick(world.employees).number},
                  {"cusc", random.Chance(70) ? "DAY" : "24H"},
                  {"czon", Code("Z", random.Between(1, 5), 1)},
                  {"dist", random.Between(5, 900) / 10.0},
                  {"trti", random.Between(2, 24) * 5.0},
                  {"ccal", random.Chance(80) ? world.calendars[0] : std::string()},
                  {"cadr", installation.address}});
}

void ServiceObjects(const World& world, TableWriter& table) {
  Random random = world.Dice("tscfg200");
  for (const Installation& installation : world.installations) {
    for (int number = 1; number <= installation.objects; ++number) {
      const auto& product = random.Pick(words::kProducts);
      table.Insert({{"ccfg", installation.code},
                    {"crob", std::string(product.group) + "-" + installation.code.substr(3)},
                    {"oseq", number},
                    {"desc", product.name},
                    {"cogr", product.group},
                    {"cusc", random.Chance(70) ? "DAY" : "24H"},
                    {"manu", random.Pick(words::kMakers)},
                    {"ccal", random.Chance(50) ? world.calendars[0] : std::string()},
                    {"cdel", installation.address}});
    }
  }
}

void PlannedActivities(const World& world, TableWriter& table) {
  Random random = world.Dice("tsspc200");
  for (const Installation& installation : world.installations) {
    const int count = random.Between(0, 2);
    for (int number = 1; number <= count; ++number) {
      const Moment earliest = At(Later(world.plan.today, random.Between(-20, 90)), random.Between(7, 15));
      const bool planned = random.Chance(60);
      const Moment start = Later(earliest, random.Between(0, 3));
      const int minutes = random.Between(2, 16) * 15;
      table.Insert({{"ccfg", installation.code},
                    {"crac", Code("ACT", random.Between(1, 40), 3)},
                    {"aseq", number * 10},
                    {"desc", "Upkeep of " + installation.description},
                    {"cagr", "UPKEEP"},
                    {"cstp", random.Pick(world.serviceTypes)},
                    {"cwoc", installation.center},
                    {"crob", random.Chance(70) ? std::string(random.Pick(words::kProducts).group) : std::string()},
                    {"oseq", random.Between(0, installation.objects)},
                    {"esct", earliest},
                    {"psct", planned ? std::optional(start) : std::nullopt},
                    {"pfct", planned ? std::optional(Later(start, 0, minutes)) : std::nullopt},
                    {"lfct", random.Chance(80) ? std::optional(Later(earliest, 14)) : std::nullopt},
                    {"adur", minutes / 60.0},
                    {"trtm", random.Between(1, 8) * 15.0},
                    {"skla", random.Pick(world.skills)},
                    {"sklb", random.Chance(30) ? random.Pick(world.skills) : std::string()},
                    {"appo", random.Between(1, 2)},
                    {"stat", planned ? 20 : 10}});
    }
  }
}

}  // namespace

std::vector<Maker> InstallationMakers() {
  return {{"tscfg220", Configurations}, {"tscfg200", ServiceObjects}, {"tsspc200", PlannedActivities}};
}

}  // namespace orvan
