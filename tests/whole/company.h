// The sandbox ERP's file with a small company, which works when the test makes it.
//
// The data is about 2026-11-20; nothing is in the audit trail yet. What the test changes by SQL is entered in the trail
// at the time that the test names, like the company's own work.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "platform/datetime.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {

inline DateTime At(int day, int hour, int minute = 0, int second = 0) {  // of November 2026
  return DateTime::FromDate(2026, 11, day).PlusTime(hour, minute, second);
}

class Company {
 public:
  // Sizes by the names of the options of "orvan-sandbox make"; those not named are small.
  explicit Company(std::map<std::string, int> sizes = {});

  std::string File() const { return folder_ / "orvan.db"; }
  std::string Component() const { return "OrvanSandbox, " + File(); }  // the business component of a run

  // Nine hours of work from that moment on, the last of it entered less than nine hours later.
  void Work(std::uint64_t seed, DateTime from);

  void Change(DateTime at, const std::string& statements);

  std::string Value(const std::string& query) const;  // one value as text; "" for none

 private:
  TempFolder folder_;
};

}  // namespace qmx::test
