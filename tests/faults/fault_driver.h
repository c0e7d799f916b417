// Runs the program with one fault beneath it after the other, and judges what each run left.
#pragma once

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/faults/counted_calls.h"
#include "tests/faults/fault_kinds.h"
#include "tests/faults/faulty_line.h"
#include "tests/faults/judge.h"
#include "tests/faults/target_table.h"
#include "tests/whole/copy_process.h"

namespace qmx::test::faults {

// What came of the faults of one kind in one way of copying.
struct Outcomes {
  int runs = 0;
  int struck = 0;  // of them; in the others the fault came too late
  std::vector<std::string> findings;
};

class FaultDriver {
 public:
  explicit FaultDriver(const std::string& system);  // SQLite, PostgreSQL or MariaDB

  bool Has(const FaultKind& kind) const;  // on this system

  // Tries so many faults of a kind, spread evenly over the calls that a copy makes, or each of them where these are
  // fewer. Of a slow kind it tries a tenth.
  Outcomes Try(const FaultKind& kind, const CopyKind& copy, int runs);

 private:
  struct Fault {
    const FaultKind& kind;
    const CopyKind& copy;
    long first;  // the call that it strikes
    bool isTraced;
  };

  std::vector<std::string> Judged(const Fault& fault, Outcomes& outcomes);
  Left RunWith(const Fault& fault);
  Left RunWithout(const CopyKind& copy);
  Left EndOf(const CopyProcesses& program) const;
  void LookAtFiles(const CopyProcesses& program, Left& left) const;
  std::string Shown(const Fault& fault, const Left& left, const std::string& finding) const;

  std::string system_;
  TableStates states_;
  TempFolder place_{TempFolder::Place::InMemory};  // of the local database, and of what the faulty libraries count
  std::unique_ptr<TargetTable> table_;
  CountedCalls calls_{place_ / "count"};
  long made_ = 0;  // by the last run with a fault
  std::mt19937 dice_{20261122};
};

}  // namespace qmx::test::faults
