// faults [KIND] [RUNS]: tries so many faults (60) of each kind, or of those whose names begin with KIND, in each way of
// copying and over each system. Prints a line for each, and what was found. The exit status is 1 if anything was.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include "tests/faults/fault_driver.h"
#include "tests/support/systems_under_test.h"

namespace {

using namespace qmx::test::faults;

constexpr int kRuns = 60;

bool IsNumber(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

std::vector<std::string> Systems() {
  std::vector<std::string> systems;
  for (const qmx::test::DriverUnderTest& system : qmx::test::SystemsUnderTest()) systems.push_back(system.name);
  return systems;
}

void Print(const FaultKind& kind, const CopyKind& copy, const std::string& system, const Outcomes& outcomes) {
  std::printf("%-24s %-14s %-11s %6d %6d %9zu\n", kind.name.c_str(), copy.name.c_str(), system.c_str(), outcomes.runs,
              outcomes.struck, outcomes.findings.size());
  std::fflush(stdout);
  for (const std::string& finding : outcomes.findings) std::fprintf(stderr, "%s\n", finding.c_str());
}

int Run(const std::string& wanted, int runs) {
  Outcomes all;
  std::printf("%-24s %-14s %-11s %6s %6s %9s\n", "KIND", "COPY", "SYSTEM", "RUNS", "STRUCK", "FINDINGS");
  for (const std::string& system : Systems()) {
    FaultDriver driver(system);
    for (const FaultKind& kind : FaultKinds()) {
      if (!kind.name.starts_with(wanted) || !driver.Has(kind)) continue;
      for (const CopyKind& copy : CopyKinds()) {
        const Outcomes outcomes = driver.Try(kind, copy, runs);
        Print(kind, copy, system, outcomes);
        all.runs += outcomes.runs;
        all.struck += outcomes.struck;
        all.findings.insert(all.findings.end(), outcomes.findings.begin(), outcomes.findings.end());
      }
    }
  }
  std::printf("%d runs, %d faults struck, %zu findings\n", all.runs, all.struck, all.findings.size());
  if (all.runs == 0) std::fprintf(stderr, "There is no kind %s.\n", wanted.c_str());
  return all.runs > 0 && all.findings.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  std::string wanted;
  int runs = kRuns;
  for (int argument = 1; argument < argc; ++argument) {
    if (IsNumber(argv[argument])) {
      runs = std::atoi(argv[argument]);
    } else {
      wanted = argv[argument];
    }
  }
  try {
    return Run(wanted, runs);
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "%s\n", problem.what());
    return 1;
  }
}
