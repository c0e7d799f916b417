// Options and arguments that several commands share. Like command_line.cpp, this is one of the two places that see the
// argument library.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/listing.h"
#include "tools/qmxadmin/settings_file.h"

namespace qmx {

inline constexpr const char* kConnection = "CONNECTION";
inline constexpr const char* kDatabase = "DATABASE";

enum class Need { Optional, Required };

void AddDatabase(CLI::App& command, DatabaseArguments& arguments);
void AddJson(CLI::App& command, OutputForm& form);
void AddQuiet(CLI::App& command, bool& quiet);

// QMX_LOGS and QMX_COMPONENT are the values without the option.
void AddLogs(CLI::App& command, std::string& logs, Need need);
void AddComponent(CLI::App& command, std::string& component, Need need);

// Table codes and --all.
void AddTables(CLI::App& command, std::vector<std::string>& tables, bool& all, const std::string& description);

// Reports a required argument that is missing, and where it can be set.
void ReportMissing(const CLI::RequiredError& error, const SettingsFile& settings);

}  // namespace qmx
