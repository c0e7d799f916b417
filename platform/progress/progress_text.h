// The texts of the progress line: "tssoc200   1,234,567 rows   45,678 rows/s   1:23".
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace qmx {

std::string CountText(std::int64_t count);               // "1,234,567"
std::string ElapsedText(std::chrono::seconds duration);  // "1:23", "2:01:23"
std::string DeletingText(const std::string& table, std::chrono::seconds elapsed);
std::string ProgressText(const std::string& table, std::int64_t rows, std::int64_t rowsPerSecond,
                         std::chrono::seconds elapsed);

}  // namespace qmx
