#include "platform/system/further_components.h"

namespace qmx {

std::unique_ptr<FurtherComponents> ComponentsOfTheSystem() { return nullptr; }

}  // namespace qmx
