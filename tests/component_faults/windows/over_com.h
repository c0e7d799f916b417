// An ERP of a test as COM has it: its ProgIDs are registered classes, which the test's own process serves.
#pragma once

#include <oaidl.h>

#include <functional>
#include <memory>

#include "platform/com/com_ptr.h"
#include "platform/further_components.h"
#include "tests/component_faults/served_erp.h"

namespace qmx::test {

// All ProgIDs but the date's are the ERP's.
std::unique_ptr<FurtherComponents> OverCom(ServedErp& erp);

// What COM gives in place of each object that the ERP creates from now on. None if it is empty.
using Replacement = std::function<ComPtr<IDispatch>(ComPtr<IDispatch> created)>;
void ReplaceObjectsOfCom(Replacement replacement);

}  // namespace qmx::test
