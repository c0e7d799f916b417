// A plain model of the expansion of calendars: records in, lines out.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/datetime.h"

namespace qmx::fuzz {

struct PlainRecord {
  std::string ccal;
  DateTime start, end;
  bool hasEnd = true;
  std::int32_t sttm = 0;
  std::int32_t entm = 0;
};

struct PlainExpansion {
  std::map<std::string, std::string>
      rows;                     // by calendar: "2026-01-05 08:00:00 > 2026-01-05 17:00:00", one on each line
  std::set<std::string> begun;  // the calendars before the error, and its own
  std::int32_t error = 0;       // that ended the expansion
};

PlainExpansion ExpandPlainly(const std::vector<std::string>& calendars, const std::vector<PlainRecord>& records);

}  // namespace qmx::fuzz
