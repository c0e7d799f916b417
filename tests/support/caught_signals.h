// Whether a process that runs catches a signal: what it does before it does so cannot be interrupted.
#pragma once

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/support/temp_folder.h"

namespace qmx::test {

// Waits until it does. Raises when there is no such process any more.
inline void AwaitThatItCatches(const std::string& process, int signal) {
  const std::string mark = "SigCgt:\t";
  for (;;) {
    const std::string status = ReadFile("/proc/" + process + "/status");
    const std::size_t at = status.find(mark);
    if (at == std::string::npos) throw std::runtime_error("process " + process + " runs no more");
    const unsigned long long caught = std::strtoull(status.c_str() + at + mark.size(), nullptr, 16);
    if ((caught >> (signal - 1)) & 1) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
}

}  // namespace qmx::test
