#include "tools/qmxadmin/copy/plan.h"

#include <algorithm>

namespace qmx {

CopyPlan::CopyPlan(const std::vector<std::string>& tables) : states_(tables.size(), State::Waiting) {
  for (std::size_t table = 0; table < tables.size(); ++table) {
    areCalendars_.push_back(CodeOf(tables[table]) == "tcccp030");
    if (CodeOf(tables[table]) == "tsmdm140") employees_.push_back(table);
  }
}

std::optional<std::size_t> CopyPlan::Next() {
  for (std::size_t table = 0; table < states_.size(); ++table) {
    if (!MayStart(table)) continue;
    states_[table] = State::Started;
    return table;
  }
  return std::nullopt;
}

bool CopyPlan::MayStart(std::size_t table) const {
  if (states_[table] != State::Waiting) return false;
  return !areCalendars_[table] || std::all_of(employees_.begin(), employees_.end(), [&](std::size_t employees) {
    return states_[employees] == State::Copied;
  });
}

void CopyPlan::Ended(std::size_t table, bool copied) { states_[table] = copied ? State::Copied : State::Failed; }

std::string CodeOf(const std::string& table) { return table.substr(0, table.find('=')); }

}  // namespace qmx
