#include "platform/savepoint.h"

#include "platform/execution.h"

namespace qmx {

Savepoint::Savepoint(DriverSession& session)
    : release_(session.Prepare("release savepoint qmx")), rollBack_(session.Prepare("rollback to savepoint qmx")) {
  Execution(*session.Prepare("savepoint qmx")).Run();
}

void Savepoint::Release() { Execution(*release_).Run(); }

bool Savepoint::RollBack() noexcept {
  try {
    Execution(*rollBack_).Run();
    Release();  // or each savepoint would stay within the one before
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace qmx
