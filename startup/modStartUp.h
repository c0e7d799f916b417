// Start-up: reads the command line, sets the run's switches and starts the copy of one table.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/modDeclarations.h"
#include "platform/platform.h"

namespace qmx {

// Does the whole run. The declarations have its exit status afterwards.
//
// Writes a failure to the start-up failure log and to the failure report, and does not raise it. Raises if that log
// cannot be written: the command line has no log directory, or the directory is not writable.
void Main(Platform& platform, modDeclarations& declarations, std::string_view commandLine);

// Returns the table code on the command line; empty if there is none.
std::string TableCode(std::string_view commandLine);

// The parts of a command line that the run record shows.
struct RunRequest {
  std::string connection;
  std::string table;
  std::string logDirectory;
  std::optional<std::int32_t> statusRequest;  // none if it is absent, empty or not a number
};

// None if the command line names no log directory.
std::optional<RunRequest> ReadRunRequest(std::string_view commandLineText);

// Returns the log directory on the command line; raises 9 if there is none.
std::string LogDirectory(std::string_view commandLineText);

// Appends a record of the error being handled to QMXDBSynclog.txt in the directory. A blank directory means "C:".
void WriteStartupFailureLog(TextFiles& files, Clock& clock, const std::string& LogDirectory);

}  // namespace qmx
