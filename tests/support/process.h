// A program run to its end: its exit status and what it wrote.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace qmx::test {

struct Process {
  int status = -1;  // of its exit; 128 plus the signal's number when it was killed by one
  std::string out;
  std::string err;
};

// In the given folder, with the test's own environment and these variables on top; standard input is empty.
Process Run(const std::string& program, const std::vector<std::string>& arguments,
            const std::map<std::string, std::string>& environment = {}, const std::string& folder = ".");

}  // namespace qmx::test
