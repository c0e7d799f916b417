#include "platform/savepoint.h"

#include "platform/execution.h"

namespace qmx {

Savepoint::Savepoint(DriverSession& session) : session_(session) { Run("savepoint qmx"); }

void Savepoint::Release() { Run("release savepoint qmx"); }

bool Savepoint::RollBack() noexcept {
  try {
    Run("rollback to savepoint qmx");
    Release();  // or each savepoint would stay within the one before
    return true;
  } catch (...) {
    return false;
  }
}

void Savepoint::Run(const char* statement) {
  const auto prepared = session_.Prepare(statement);
  Execution(*prepared).Run();
}

}  // namespace qmx
