#include "tools/qmxadmin/environment_arguments.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace qmx {
namespace {

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

// "tcccp030=KEY=E" is not one, because it has digits before its "=".
bool IsConnectionText(std::string_view argument) {
  constexpr std::string_view kKeyword = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz _";
  const std::size_t end = argument.find_first_not_of(kKeyword);
  return end != 0 && end != std::string_view::npos && argument[end] == '=';
}

}  // namespace

std::vector<std::string> WithEnvironment(std::vector<std::string> arguments) {
  const std::string connection = Variable("QMX_CONNECTION");
  if (connection.empty() || arguments.empty()) return arguments;
  if (std::any_of(arguments.begin() + 1, arguments.end(), IsConnectionText)) return arguments;
  arguments.insert(arguments.begin() + 1, {connection, Variable("QMX_DATABASE")});
  return arguments;
}

}  // namespace qmx
