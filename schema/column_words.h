// Short names for the columns of the tables.
#pragma once

#include <utility>
#include <vector>

#include "schema/local_tables.h"

namespace qmx {

// Keys are made of codes, so a code must not be too wide for the indexes of any database system.
inline LocalColumn Code(std::string name) { return {std::move(name), Variant::Kind::Text, 100}; }
inline LocalColumn TableCode(std::string name) { return {std::move(name), Variant::Kind::Text, 100, false, true}; }
inline LocalColumn Description(std::string name) { return {std::move(name), Variant::Kind::Text, 500}; }
inline LocalColumn Number(std::string name) { return {std::move(name), Variant::Kind::Double}; }
inline LocalColumn Line(std::string name) { return {std::move(name), Variant::Kind::Int32}; }
inline LocalColumn TimeOfDay(std::string name) { return {std::move(name), Variant::Kind::Int32}; }
inline LocalColumn YesNo(std::string name) { return {std::move(name), Variant::Kind::Int16}; }
inline LocalColumn Setting(std::string name) { return {std::move(name), Variant::Kind::Int16, 0, true}; }
inline LocalColumn Moment(std::string name) { return {std::move(name), Variant::Kind::DateTime}; }

std::vector<LocalTable> MasterDataTables();
std::vector<LocalTable> CalendarTables();
std::vector<LocalTable> OrderTables();
std::vector<LocalTable> ControlTables();

}  // namespace qmx
