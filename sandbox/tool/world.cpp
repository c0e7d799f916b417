#include "tool/world.h"

#include <algorithm>

#include "tool/words.h"

namespace orvan {
namespace {

// Takes the known codes first, then numbered ones.
template <class Known>
std::vector<std::string> Codes(const Known& known, int count, std::string_view prefix) {
  std::vector<std::string> codes;
  for (int i = 0; i < count; ++i) {
    const auto place = static_cast<std::size_t>(i);
    codes.push_back(place < std::size(known) ? std::string(known[place].code) : Code(prefix, i + 1, 2));
  }
  return codes;
}

std::string PersonName(Random& random) {
  std::string name(random.Pick(words::kFirstNames));
  return name.append(" ").append(random.Pick(words::kSurnames));
}

std::vector<Employee> Employees(const World& world) {
  Random random = world.Dice("employees");
  const auto inUse = std::max<std::size_t>(1, world.calendars.size() - 1);
  std::vector<Employee> employees;
  for (int i = 0; i < world.plan.sizes.employees; ++i) {
    const Area& area = random.Pick(world.areas);
    Employee employee{Code("E", i + 1, 5), PersonName(random), area.center, area.code, "", ""};
    if (i % 10 != 9) employee.calendar = world.calendars[static_cast<std::size_t>(i) % inUse];
    if (i > 3) employee.foreman = Code("E", random.Between(1, 3), 5);
    employees.push_back(std::move(employee));
  }
  return employees;
}

std::vector<Installation> Installations(const World& world) {
  Random random = world.Dice("installations");
  std::vector<Installation> installations;
  for (int i = 0; i < world.plan.sizes.configurations; ++i) {
    const Area& area = random.Pick(world.areas);
    const auto& product = random.Pick(words::kProducts);
    const Employee& engineer = random.Pick(world.employees);
    const std::string partner = Code("BP", random.Between(1, std::max(1, world.plan.sizes.configurations / 3)), 5);
    installations.push_back({Code("CFG", i + 1, 5), std::string(product.name) + ", " + area.city, partner,
                             PartnerName(world.plan.seed, partner),
                             Code("A", random.Between(1, world.plan.sizes.addresses), 6), area.center, area.code,
                             engineer.number, random.Between(1, 4)});
  }
  return installations;
}

}  // namespace

std::string Code(std::string_view prefix, int number, int width) {
  const std::string digits = std::to_string(number);
  const auto zeros = std::max<std::ptrdiff_t>(0, width - static_cast<std::ptrdiff_t>(digits.size()));
  return std::string(prefix) + std::string(static_cast<std::size_t>(zeros), '0') + digits;
}

std::string PartnerName(std::uint64_t seed, std::string_view partner) {
  Random random(seed, partner);
  std::string name(random.Pick(words::kSurnames));
  return name.append(" ").append(random.Pick(words::kTrades));
}

World MakeWorld(const Plan& plan) {
  World world{plan, {}, {}, {}, {}, {}, {}, {}};
  world.serviceTypes = Codes(words::kServiceTypes, plan.sizes.serviceTypes, "T");
  world.skills = Codes(words::kSkills, plan.sizes.skills, "S");
  for (int i = 0; i < plan.sizes.centers; ++i) world.centers.push_back(Code("SC", i + 1, 2));
  for (int i = 0; i < plan.sizes.areas; ++i) {
    const auto& cities = words::kCities;
    world.areas.push_back({Code("AR", i + 1, 3), std::string(cities[static_cast<std::size_t>(i) % std::size(cities)]),
                           world.centers[static_cast<std::size_t>(i) % world.centers.size()]});
  }
  for (int i = 0; i < plan.sizes.calendars; ++i) world.calendars.push_back(Code("CAL", i + 1, 3));
  world.employees = Employees(world);
  world.installations = Installations(world);
  return world;
}

}  // namespace orvan
