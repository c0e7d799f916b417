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
  std::string user;                        // of the effective user; its number if /etc/passwd does not list it
  uid_t userNumber = 0;
};

ProcessIdentity ThisProcess();

std::string HostName();

// A new one each time the host boots. Empty if /proc is not mounted.
std::string BootNumber();

// When the process was started, in clock ticks since the host booted. Together with the boot number and the process
// number it names one process only, since process numbers are used again. None if there is no such process.
std::optional<std::int64_t> StartTicksOf(pid_t process);

// A random UUID, version 4. Raises 51 if the kernel gives no random bytes.
std::string NewRunNumber();

// How much memory this process held at most. None if /proc is not mounted.
std::optional<std::int64_t> PeakMemoryKib();

}  // namespace qmx
