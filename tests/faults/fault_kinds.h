// The kinds of fault, as data: what fails beneath the program, how, and over which systems that is tried.
#pragma once

#include <string>
#include <vector>

#include "tests/faults/judge.h"
#include "tests/faults/table_states.h"

namespace qmx::test::faults {

// What makes the fault.
enum class Maker {
  Calls,      // faulty_calls.c, beneath the program
  Component,  // faulty_component.cpp, in place of the ERP
};

struct FaultKind {
  std::string name;
  Maker maker;
  std::string calls;        // for Maker::Calls, as faulty_calls.c names them
  int count;                // of faults in a row; 0 for all that follow
  std::string action;       // likewise
  std::string files = "-";  // likewise; "FOLDER" stands for the one into which the run writes
  Ending ending = Ending::ByItself;
};

const std::vector<FaultKind>& FaultKinds();

// How the table is copied.
struct CopyKind {
  std::string name;
  Method method;
  bool isWhole;
};

const std::vector<CopyKind>& CopyKinds();

}  // namespace qmx::test::faults
