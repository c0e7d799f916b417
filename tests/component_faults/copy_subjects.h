// What is copied while the components fail: every table in full and by change, and the calendars in each way.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/copy/tables/calendar_rig.h"

namespace qmx::test {

struct CopySubject {
  std::string name;     // "tsmdm030 in full"
  std::string request;  // the table as the command line names it
  std::string table;
  std::vector<std::string> columns;               // that are compared
  std::function<void(CalendarRig& rig)> prepare;  // the ERP and the local tables
};

const std::vector<CopySubject>& CopySubjects();

const CopySubject& SubjectNamed(const std::string& name);

std::string NameOfSubject(const testing::TestParamInfo<CopySubject>& instance);

}  // namespace qmx::test
