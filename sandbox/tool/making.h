// Makers of the data of a new sandbox file: one for each table, in one source for each group of tables.
#pragma once

#include "tool/table_writer.h"
#include "tool/world.h"

namespace orvan {

struct Maker {
  std::string_view code;
  void (*make)(const World& world, TableWriter& table);
};

std::vector<Maker> MasterDataMakers();
std::vector<Maker> CalendarMakers();
std::vector<Maker> InstallationMakers();
std::vector<Maker> OrderMakers();

}  // namespace orvan
