// The environment variables of this process, as UTF-8.
#pragma once

#include <optional>
#include <string>

namespace qmx {

// None if it is not set.
std::optional<std::string> EnvironmentVariable(const std::string& name);

// Sets it for this process and for those that it starts. Not while another thread reads variables.
void SetVariable(const std::string& name, const std::string& value);

// Separates the folders of a search path in a variable: ':', or ';' where ':' is a part of paths.
extern const char kSearchPathSeparator;

}  // namespace qmx
