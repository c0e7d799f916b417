#include "tools/qmxadmin/verify/json_report.h"

#include <nlohmann/json.hpp>

namespace qmx {
namespace {

Json Values(const LocalTable& table, const std::vector<std::size_t>& columns, const RowValues& row) {
  Json values = Json::object();
  for (const std::size_t column : columns) values[table.columns[column].name] = JsonValue(row[column]);
  return values;
}

}  // namespace

void JsonReport::Write(const Difference& difference) {
  Json object = {{"table", Table().name},
                 {"difference", kDifferenceWords[difference.kind]},
                 {"key", Values(Table(), KeyColumns(), difference.Key())}};
  if (!difference.columns.empty()) {
    object["local"] = Values(Table(), difference.columns, *difference.local);
    object["erp"] = Values(Table(), difference.columns, *difference.erp);
  }
  if (difference.kind == kRepeated) object["times"] = difference.times;
  array_.Add(object);
}

void JsonReport::WriteSummary(const ComparedRows& rows) {
  Json object = {{"table", Table().name}, {"erp_rows", rows.erp}, {"local_rows", rows.local}, {"older", rows.older}};
  for (int kind = 0; kind < kDifferenceKinds; ++kind) object[kDifferenceWords[kind]] = CountOf(kind);
  array_.Add(object);
}

}  // namespace qmx
