// The fields of the run records and their values. docs/run-records.md is their contract.
#pragma once

namespace qmx::run_records {

// Incremented when a field is removed or changes its meaning. New fields do not change it.
inline constexpr int kVersion = 1;

inline constexpr const char* kFileName = "QMXRuns.jsonl";

// In both records.
inline constexpr const char* kFormat = "v";
inline constexpr const char* kRecord = "record";
inline constexpr const char* kRun = "run";
inline constexpr const char* kTime = "time";
inline constexpr const char* kTable = "table";

// In the record of the start.
inline constexpr const char* kHost = "host";
inline constexpr const char* kProcess = "pid";
inline constexpr const char* kProcessStart = "pid_start";
inline constexpr const char* kBoot = "boot";
inline constexpr const char* kUser = "user";
inline constexpr const char* kUserNumber = "uid";
inline constexpr const char* kProgram = "version";
inline constexpr const char* kRequest = "request";
inline constexpr const char* kMode = "mode";

// In the record of the end.
inline constexpr const char* kDuration = "duration_ms";
inline constexpr const char* kOutcome = "outcome";
inline constexpr const char* kStatus = "status";
inline constexpr const char* kMethod = "method";
inline constexpr const char* kInserted = "inserted";
inline constexpr const char* kUpdated = "updated";
inline constexpr const char* kDeleted = "deleted";
inline constexpr const char* kLastUpdate = "lutm";
inline constexpr const char* kRetries = "retries";
inline constexpr const char* kPeakMemory = "peak_memory_kib";
inline constexpr const char* kCauses = "causes";

// In each cause.
inline constexpr const char* kNumber = "number";
inline constexpr const char* kSource = "source";
inline constexpr const char* kDescription = "description";
inline constexpr const char* kDetails = "details";

// Values of "record".
inline constexpr const char* kStart = "start";
inline constexpr const char* kEnd = "end";

// Values of "mode".
inline constexpr const char* kWhole = "whole";
inline constexpr const char* kByRow = "rows";

// Values of "outcome".
inline constexpr const char* kComplete = "complete";
inline constexpr const char* kFailed = "failed";
inline constexpr const char* kError = "error";
inline constexpr const char* kRefused = "refused";
inline constexpr const char* kNothing = "nothing";
inline constexpr const char* kEnded = "ended";
inline constexpr const char* kCrashed = "crashed";

// Values of "method".
inline constexpr const char* kFull = "full";
inline constexpr const char* kChanged = "changed";

}  // namespace qmx::run_records
