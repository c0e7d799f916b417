#include "tool/working.h"

#include "erp/sqlite.h"
#include "tool/world.h"

namespace orvan {

TableWriter& Workshop::Table(std::string_view code) {
  auto found = tables_.find(code);
  if (found == tables_.end()) found = tables_.emplace(std::string(code), TableWriter(database_, code)).first;
  return found->second;
}

std::string Workshop::PickValue(std::string_view code, std::string_view column, const std::string& filter) {
  const auto record = Pick(code, filter);
  return record ? Table(code).Get(column, *record) : std::string();
}

void Workshop::ChangeOne(std::string_view code, Fields fields, const std::string& filter) {
  if (const auto record = Pick(code, filter)) Table(code).Update(*record, fields);
}

void Workshop::DeleteOne(std::string_view code, const std::string& filter) {
  if (const auto record = Pick(code, filter)) Table(code).Delete(*record);
}

void Workshop::DeleteOneAndInsertItAgain(std::string_view code) {
  if (const auto record = Pick(code)) Table(code).DeleteAndInsertAgain(*record);
}

std::optional<std::string> Workshop::FreeCode(std::string_view code, std::string_view column, std::string_view prefix,
                                              int width) {
  int most = 1;
  for (int i = 0; i < width; ++i) most *= 10;
  for (int tries = 0; tries < 20; ++tries) {
    std::string free = Code(prefix, random.Between(0, most - 1), width);
    if (Table(code).Get(column, Quoted(column) + " = '" + free + "'").empty()) return free;
  }
  return std::nullopt;
}

}  // namespace orvan
