// What identifies a process, on its host and among all hosts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace qmx {

struct ProcessIdentity {
  std::string host;
  std::int64_t process = 0;
  std::optional<std::int64_t> startTicks;  // none if the system does not tell
  std::string boot;                        // empty if the system does not tell
  std::string user;                        // name of the effective user; its number if no name is known
  std::int64_t userNumber = 0;
};

ProcessIdentity ThisProcess();

std::string HostName();

// Changes with each boot of the host. Empty if the system does not tell (/proc is not mounted).
std::string BootNumber();

// When the process started, in the system's own unit (clock ticks since the host booted). Together with the boot ID and
// the process ID it identifies one process, because process IDs are reused. None if there is no such process or it has
// ended.
std::optional<std::int64_t> StartTicksOf(std::int64_t process);

// The peak memory of this process. None if the system does not tell.
std::optional<std::int64_t> PeakMemoryKib();

}  // namespace qmx
