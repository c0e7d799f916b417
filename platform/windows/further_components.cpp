#include "platform/system/further_components.h"

#include "platform/com/com_components.h"

namespace qmx {

std::unique_ptr<FurtherComponents> ComponentsOfTheSystem() { return std::make_unique<ComComponents>(); }

}  // namespace qmx
