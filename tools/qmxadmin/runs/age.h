// Ages and moments as an operator types them.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "tools/qmxadmin/runs/run.h"

namespace qmx {

// "90min", "26h", "3 days", also "d" and "s". None for any other text.
std::optional<std::chrono::seconds> ParseAge(const std::string& text);

// The same, but raises 5 for any other text.
std::chrono::seconds RequiredAge(const std::string& text);

// A local time such as 2026-11-20 or "2026-11-20 14:05", or an age that ends now. Raises 5 for any other text.
RunMoment SinceMoment(const std::string& text, RunMoment now);

// The instant of a local time of the form "2026-11-20 14:05:09" or "2026-11-20". None for any other text.
std::optional<RunMoment> MomentOfLocalTime(const std::string& text);

}  // namespace qmx
