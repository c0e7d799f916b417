// The components' part of a check: those that the copies ask for are registered, load, are made and answer.
#pragma once

#include <string>

#include "tools/qmxadmin/check/findings.h"

namespace qmx {

// The business component is handed to each manager; where it is empty, managers are made and not asked.
void CheckComponents(const std::string& businessComponent, Findings& findings);

}  // namespace qmx
