#include "tools/qmxadmin/environment_arguments.h"

#include <algorithm>
#include <string_view>

#include "platform/system/environment.h"

namespace qmx {
namespace {

// "tcccp030=KEY=E" is not one, because it has digits before its "=".
bool IsConnectionText(std::string_view argument) {
  constexpr std::string_view kKeyword = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz _";
  const std::size_t end = argument.find_first_not_of(kKeyword);
  return end != 0 && end != std::string_view::npos && argument[end] == '=';
}

}  // namespace

std::vector<std::string> WithEnvironment(std::vector<std::string> arguments) {
  const std::string connection = EnvironmentVariable("QMX_CONNECTION").value_or("");
  if (connection.empty() || arguments.empty()) return arguments;
  if (std::any_of(arguments.begin() + 1, arguments.end(), IsConnectionText)) return arguments;
  arguments.insert(arguments.begin() + 1, {connection, EnvironmentVariable("QMX_DATABASE").value_or("")});
  return arguments;
}

}  // namespace qmx
