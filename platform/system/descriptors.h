// Open descriptors: standard error, logs, and those that the program which started this one left open.
#pragma once

#include <chrono>
#include <string_view>

namespace qmx {

inline constexpr int kStandardInput = 0;
inline constexpr int kStandardOutput = 1;
inline constexpr int kStandardError = 2;

// Returns the descriptor with that number, which this process inherited, and stops child processes from inheriting it.
// Returns -1 if nothing is open there. On Windows, where handles are inherited, the number is a handle's.
int InheritedDescriptor(int number) noexcept;

// Writes a short line (at most 128 bytes) to a reader that may not keep up, and waits for it at most the given time.
// Returns false if nothing of the line was written. A line that was cut is completed before the next one.
bool WriteLine(int descriptor, std::string_view line, std::chrono::milliseconds within = {}) noexcept;

// Returns a second descriptor of the same file, or -1. Child processes do not inherit it.
int Duplicated(int descriptor) noexcept;

}  // namespace qmx
