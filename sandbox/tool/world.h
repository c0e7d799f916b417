// The service company of the sandbox: its people and things, so that the tables are consistent.
//
// Everything follows from the seed, the sizes and today's date. Orders and their lines are not kept here, because there
// may be millions.
#pragma once

#include <string>
#include <vector>

#include "binding/moment.h"
#include "tool/random.h"

namespace orvan {

struct Sizes {
  int serviceTypes = 12;
  int centers = 4;
  int areas = 10;
  int skills = 14;
  int employees = 30;
  int addresses = 150;
  int calendars = 7;
  int calendarDays = 300;  // from 90 days before today on
  int configurations = 100;
  int orders = 400;
  int activities = 3;  // per order, at most
};

struct Plan {
  std::uint64_t seed = 1;
  Moment today;
  Sizes sizes;
};

struct Employee {
  std::string number;
  std::string name;
  std::string center;
  std::string area;
  std::string calendar;  // blank: none
  std::string foreman;   // blank: none
};

struct Area {
  std::string code;
  std::string city;
  std::string center;
};

struct Installation {  // a customer's configuration
  std::string code;
  std::string description;
  std::string partner;
  std::string partnerName;
  std::string address;
  std::string center;
  std::string area;
  std::string engineer;
  int objects = 1;
};

struct World {
  Plan plan;
  std::vector<std::string> serviceTypes;
  std::vector<std::string> centers;
  std::vector<Area> areas;
  std::vector<std::string> skills;
  std::vector<Employee> employees;
  std::vector<std::string> calendars;  // if there are several, the last has no employee yet
  std::vector<Installation> installations;

  Random Dice(std::string_view purpose) const { return {plan.seed, purpose}; }
};

World MakeWorld(const Plan& plan);

// Returns "SC01": the number has leading zeros up to the width.
std::string Code(std::string_view prefix, int number, int width);

std::string PartnerName(std::uint64_t seed, std::string_view partner);  // the same for every use of the partner

}  // namespace orvan
