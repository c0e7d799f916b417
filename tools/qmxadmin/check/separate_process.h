// Runs checks in a process of their own, because a component may crash it or call exit.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/qmxadmin/check/finding_sink.h"

namespace qmx {

struct SeparateCheck {
  std::string what;
  std::function<void(FindingSink&)> run;  // raises nothing
};

// Runs the checks one after the other and adds their findings. If a check ends the process, that is a finding too, and
// the checks after it run in a new process.
void RunInSeparateProcess(const std::vector<SeparateCheck>& checks, FindingSink& findings);

}  // namespace qmx
