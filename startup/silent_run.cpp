#include "startup/silent_run.h"

#include "platform/modDeclarations.h"
#include "platform/progress/progress.h"
#include "platform/system/clock.h"
#include "platform/system/end_at_once.h"
#include "platform/system/text_files.h"
#include "startup/modStartUp.h"

namespace qmx {

void EndSilentRun(std::string_view commandLine, int listener, const Error& failure, FailureReport& failures,
                  RunRecord* record) noexcept {
  try {
    throw Error(failure).With("what to do", "\"qmxadmin release " + TableCode(commandLine) +
                                                "\" where the table is still in progress, then copy again");
  } catch (...) {
    failures.Report(CurrentError());
    try {
      SystemTextFiles files;
      SystemClock clock;
      WriteStartupFailureLog(files, clock, LogDirectory(commandLine));
    } catch (...) {
      failures.Report(CurrentError());
    }
  }
  const int status = static_cast<int>(ExitStatus::StartUpFailed);
  if (record) record->End(status, {});  // the blocked run may still write its facts
  Progress::TellEnd(listener, status);
  EndAtOnce(status);
}

}  // namespace qmx
