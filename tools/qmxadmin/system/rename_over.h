// Puts a file in the place of another one.
#pragma once

#include <chrono>
#include <string>

namespace qmx {

// Renames `from` to `to`, which is replaced if it exists. Returns why that fails, without a full stop; empty if it does
// not. Where a program that reads a file can keep it from being replaced, this tries again until `patience` has passed.
std::string RenameOver(const std::string& from, const std::string& to,
                       std::chrono::milliseconds patience = std::chrono::seconds(2));

}  // namespace qmx
