#include "startup/silent_run.h"

#include <cstdlib>

#include "platform/posix/clock.h"
#include "platform/posix/text_files.h"
#include "startup/modDeclarations.h"
#include "startup/modStartUp.h"

namespace qmx {

void EndSilentRun(std::string_view commandLine, const Error& failure, FailureReport& failures) noexcept {
  try {
    throw Error(failure).With("what to do", "\"qmxadmin release " + TableCode(commandLine) +
                                                "\" where the table is still in progress, then copy again");
  } catch (...) {
    failures.Report(CurrentError());
    try {
      PosixTextFiles files;
      PosixClock clock;
      WriteStartupFailureLog(files, clock, LogDirectory(commandLine));
    } catch (...) {
      failures.Report(CurrentError());
    }
  }
  std::_Exit(static_cast<int>(ExitStatus::StartUpFailed));
}

}  // namespace qmx
