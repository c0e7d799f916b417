// The place where the operating system registers components.
#pragma once

#include <memory>

#include "platform/further_components.h"

namespace qmx {

// Returns null if the operating system has none.
std::unique_ptr<FurtherComponents> ComponentsOfTheSystem();

}  // namespace qmx
