// The subcommands of qmxadmin: each adds itself, with its arguments, to the program and says how its run ended.
#pragma once

namespace CLI {
class App;
}

namespace qmx {

// What the process ends with.
enum class AdminStatus { Done = 0, Differs = 1, Failed = 2 };

// Each sets `status` when it is the one that is run; errors pass through. Both arguments are borrowed until then.
void AddExpand(CLI::App& program, AdminStatus& status);
void AddInit(CLI::App& program, AdminStatus& status);

}  // namespace qmx
