// Start-up: reads the command line, sets the run's switches and has one table copied.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/modDeclarations.h"
#include "platform/platform.h"

namespace qmx {

// The whole run. How it ended stands in the declarations' exit status.
//
// A failure is written to the start-up failure log, told to the failure report, and goes no further. What fails in
// doing so does: a command line without a log directory, a log directory that cannot be written.
void Main(Platform& platform, modDeclarations& declarations, std::string_view commandLine);

// The table code that the command line asks to copy; empty where it has none.
std::string TableCode(std::string_view commandLine);

// What a command line asks for, as its record tells it.
struct RunRequest {
  std::string connection;
  std::string table;
  std::string logDirectory;
  std::optional<std::int32_t> statusRequest;  // none where it is absent, empty or no number
};

// None where the command line names no log directory.
std::optional<RunRequest> ReadRunRequest(std::string_view commandLineText);

// The log directory as the command line has it; error 9 where it has none.
std::string LogDirectory(std::string_view commandLineText);

// Appends a record of the error being handled to QMXDBSynclog.txt in the directory, a blank one standing for "C:".
void WriteStartupFailureLog(TextFiles& files, Clock& clock, const std::string& LogDirectory);

}  // namespace qmx
