#include "tests/copy/tables/table_copy.h"

namespace qmx::test {
namespace {

void Append(std::string& words, std::string_view word) { words += (words.empty() ? "" : " ") + std::string(word); }

std::string Between(const std::string& line, std::string_view start, std::string_view end) {
  const std::size_t from = line.find(start) + start.size();
  return line.substr(from, line.rfind(end) - from);
}

std::string FailureOf(int syncMethod, const std::string& table, const std::string& managerProgId) {
  CopyRig rig;
  rig.ControlRecord(table, syncMethod);
  rig.erp.Serves(managerProgId, []() -> Object { throw Error(500, "Orvan", "The manager fails."); });
  rig.Run(table);
  if (rig.failures.chains.size() != 1) return std::to_string(rig.failures.chains.size()) + " failures";
  return rig.failures.chains[0].substr(0, rig.failures.chains[0].find('\n'));
}

}  // namespace

std::string ColumnsWritten(const CallLog& calls) {
  std::string columns;
  for (const std::string& line : calls.StartingWith({"rs1."})) {
    const std::size_t end = line.find(" = ");
    if (end != std::string::npos) Append(columns, std::string_view(line).substr(4, end - 4));
  }
  return columns;
}

std::string MembersCalled(const CallLog& calls, const std::string& object) {
  std::string members;
  for (const std::string& line : calls.StartingWith({object + "."})) Append(members, Between(line, ".", "("));
  return members;
}

std::vector<std::string> Criteria(const CallLog& calls) {
  std::vector<std::string> criteria;
  std::string parameter, fields;
  for (const std::string& line : calls.StartingWith({"parameter", "criteria"})) {
    if (line.starts_with("parameter")) Append(parameter, Between(line, "(", ")"));
    if (line.starts_with("criteria.addOutputField")) Append(fields, Between(line, "(\"", "\")"));
    if (!line.starts_with("criteria.addParameter")) continue;
    criteria.push_back(parameter);
    parameter.clear();
  }
  criteria.push_back(fields);
  return criteria;
}

std::vector<std::string> ManagerCalls(const CallLog& calls) { return calls.StartingWith({"manager."}); }

std::vector<std::string> SqlTexts(const CallLog& calls) {
  std::vector<std::string> texts;
  for (const std::string& line : calls.StartingWith({"connection.Execute ", "rs1.Open "})) {
    texts.push_back(line.starts_with("rs1") ? Between(line, "rs1.Open \"", "\"") : Between(line, "Execute ", ""));
  }
  return texts;
}

std::string FailureOfFullCopy(const std::string& table, const std::string& managerProgId) {
  return FailureOf(kFullCopy, table, managerProgId);
}

std::string FailureOfChangedCopy(const std::string& table, const std::string& managerProgId) {
  return FailureOf(kOnlyChanged, table, managerProgId);
}

void RunChanged(CopyRig& rig, const std::string& table, const std::string& recordProgId,
                std::vector<AuditEntry> entries) {
  rig.ControlRecord(table, kOnlyChanged, "2026-11-19");
  rig.erp.Audits(recordProgId, std::move(entries));
  rig.Run(table);
}

}  // namespace qmx::test
