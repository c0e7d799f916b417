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
  Odbc,       // odbc_faults/driver.cpp, in place of the server's driver
  Line,       // FaultyLine, between the program and the server
};

// Bits of FaultKind::systems.
inline constexpr unsigned kSqlite = 1, kPostgresql = 2, kMariadb = 4;
inline constexpr unsigned kServers = kPostgresql | kMariadb, kAll = kSqlite | kServers;

struct FaultKind {
  std::string name;
  Maker maker;
  std::string calls;        // that count, as the maker names them: kinds of call, a function, a text in what is sent
  int count;                // of faults in a row; 0 for all that follow
  std::string action;       // as the maker names it
  std::string files = "-";  // as faulty_calls.c names them
  Ending ending = Ending::ByItself;
  unsigned systems = kSqlite;
  bool isSlow = false;  // the program waits for its limit of a server's silence
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
