// What identifies a process, on its host and among all hosts.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>

namespace qmx {

struct ProcessIdentity {
  std::string host;
  pid_t process = 0;
  std::optional<std::int64_t> startTicks;  // none if /proc is not mounted
  std::string boot;                        // empty if /proc is not mounted
  std::string user;                        // name of the effective user; the ID if /etc/passwd does not list it
  uid_t userNumber = 0;
};

ProcessIdentity ThisProcess();

std::string HostName();

// Changes with each boot of the host. Empty if /proc is not mounted.
std::string BootNumber();

// When the process started, in clock ticks since the host booted. Together with the boot ID and the process ID it
// identifies one process, because process IDs are reused. None if there is no such process or it has ended.
std::optional<std::int64_t> StartTicksOf(pid_t process);

// A random UUID, version 4. Raises 51 if the kernel gives no random bytes.
std::string NewRunNumber();

// The peak memory of this process. None if /proc is not mounted.
std::optional<std::int64_t> PeakMemoryKib();

}  // namespace qmx
