#include "tools/qmxadmin/verify/changed_columns.h"

#include <string_view>

namespace qmx {
namespace {

struct NotBrought {
  std::string_view table;
  std::string_view column;
};
constexpr NotBrought kNotBrought[] = {{"tscfg220", "tecr"}, {"tssoc200", "minu"}, {"tssoc200", "stna"}};

}  // namespace

LocalTable WithoutColumnsNotBrought(LocalTable table) {
  for (const auto& [code, name] : kNotBrought) {
    if (table.name != code) continue;
    std::erase_if(table.columns, [name = name](const LocalColumn& column) { return column.name == name; });
  }
  return table;
}

}  // namespace qmx
