// The end of a run whose database driver does not return any more.
#pragma once

#include <string_view>

#include "platform/error.h"
#include "platform/failure_report.h"
#include "platform/run_records/run_record.h"

namespace qmx {

// Writes the start-up failure log and the end of the run's record (null where it has none), tells the progress
// descriptor (or Progress::kNobody) of the end, reports the failure with what to do, and ends the process as a failed
// start-up. Uses nothing of the run, which may hold it for ever: to
// be called from another thread.
[[noreturn]] void EndSilentRun(std::string_view commandLine, int listener, const Error& failure,
                               FailureReport& failures, RunRecord* record) noexcept;

}  // namespace qmx
