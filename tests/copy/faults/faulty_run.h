// The run of one table in one mode with a fault somewhere in it, and what must come of it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tests/copy/faults/copied_tables.h"
#include "tests/support/copy_rig.h"
#include "tests/support/decorated_drivers.h"
#include "tests/support/faulty_driver.h"
#include "tests/support/skipping_clock.h"

namespace qmx::test {

// What must be found after a run.
struct Outcome {
  std::vector<std::string> events;
  std::string inUse = "0";
  std::string lutm = "2026-11-19";
  std::vector<std::string> rows;
  std::vector<std::string> log;
  std::string raised = "nothing";
  std::string reported = "nothing";  // how the report begins
};

// A fault as the copy log and the reports show it.
struct Fault {
  std::int32_t number;
  std::string logRecord;
  std::string described;
};

class FaultyRun {
 public:
  FaultyRun(const CopiedTable& table, std::int16_t syncMethod, Place place = Place::AboveTheBatches);

  std::string Raised();  // runs, and gives what was raised
  Outcome Found(std::string raised);
  Outcome Expected(const Fault& fault) const;  // by the place where the first call that failed stands in the call log
  Outcome ExpectedIfDone(const Fault& fault) const;      // the same, where that call was done though it failed
  std::vector<std::vector<std::string>> States() const;  // of the table, in a copy that saves one row after the other
  std::string FirstFailure() const;

  std::unique_ptr<FaultyDriver> driver;
  SkippingClock pauses;  // between attempts, which pass at once

 private:
  std::string Event(const std::string& event) const;
  std::vector<std::string> CountLines() const;
  std::size_t Succeeded(std::string_view call) const;
  std::vector<std::string> AppliedRows(std::size_t more = 0) const;  // after so many calls more

  const CopiedTable& table_;
  const bool full_;
  LocalDrivers::Decorate decorate_ = [this](Driver& inner) -> Driver& {
    driver = std::make_unique<FaultyDriver>(inner);
    return *driver;
  };

 public:
  CopyRig rig;
};

}  // namespace qmx::test
