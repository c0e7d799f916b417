#include "tools/qmxadmin/check/check_rights.h"

#include <fmt/format.h>

#include <utility>
#include <vector>

namespace qmx {

std::optional<MissingRight> FindMissingRight(LocalDatabase& local, const LocalTable& table) {
  const std::string& name = table.name;
  const std::string& column = table.columns.front().name;
  const std::vector<std::pair<std::string, std::string>> statements = {
      {"select", fmt::format("select count(*) from {} where 1=0", name)},
      {"insert", fmt::format("insert into {0} select * from {0} where 1=0", name)},
      {"update", fmt::format("update {0} set {1} = {1} where 1=0", name, column)},
      {"delete", fmt::format("delete from {} where 1=0", name)},
  };
  for (const auto& [kind, text] : statements) {
    try {
      if (kind == "select") {
        local.SelectNumber(text);
      } else {
        local.Connection().Execute(text);
      }
    } catch (const Error& error) {
      return MissingRight{kind, error};
    }
  }
  return std::nullopt;
}

}  // namespace qmx
