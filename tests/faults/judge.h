// Decides whether what a copy left agrees with docs/guarantees.md, whatever went wrong beneath it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/faults/table_states.h"

namespace qmx::test::faults {

// What was there after a run.
struct Left {
  bool isStruck = false;  // by the fault, which may have come too late
  bool hasEnded = true;   // by itself, within the limit
  int status = 0;
  std::string err;
  Rows rows;
  std::string inUse;
  std::string lutm;
  std::string integrity = "ok";              // of the database
  std::vector<std::string> files;            // names, in every folder that the run could write
  std::map<std::string, std::string> texts;  // of logs, trace and messages, by file name
};

// How the fault may end a run, beside an end of its own with a status.
enum class Ending {
  ByItself,
  Killed,       // by SIGKILL
  Interrupted,  // by SIGTERM, before the program listens to it or after its copy
};

// What the run was.
struct Circumstances {
  const std::vector<Rows>* states = nullptr;  // through which it takes the table, in their order
  bool isWhole = false;
  Ending ending = Ending::ByItself;
  std::string oldLutm;
  std::string password;  // that may be nowhere; "" for none
};

// Sentences; none if all is as it must be.
std::vector<std::string> Findings(const Left& left, const Circumstances& run);

// The same after the next run, beneath which nothing fails and whose table was released.
std::vector<std::string> FindingsOfTheNextRun(const Left& left, const Circumstances& run);

}  // namespace qmx::test::faults
