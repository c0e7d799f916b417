// Ends a run whose database driver does not return.
#pragma once

#include <string_view>

#include "platform/error.h"
#include "platform/failure_report.h"
#include "platform/run_records/run_record.h"

namespace qmx {

// Writes the start-up failure log, the end of the run's record (may be null) and the end on the progress descriptor (or
// Progress::kNobody), reports the failure with what to do, and ends the process with the status of a failed start-up.
// Called from another thread, so it uses nothing that the blocked run may hold.
[[noreturn]] void EndSilentRun(std::string_view commandLine, int listener, const Error& failure,
                               FailureReport& failures, RunRecord* record) noexcept;

}  // namespace qmx
