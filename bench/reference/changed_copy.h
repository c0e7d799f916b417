// A changed copy of the service orders directly on the databases' own interfaces: the ERP's audit entries in order,
// each one a delete, or a select by key and then an insert or an update.
//
// As in the program's copy, a known order with an unchanged partner keeps the partner's name, and its page frequency
// becomes 0, because the audit trail has neither. An update writes all columns, or only those that differ.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "bench/reference/service_orders.h"

namespace reference {

using Columns = std::vector<int>;

inline constexpr const char* kOnlyDifferences = "differences";

// The columns that an update writes, besides the page frequency. A new partner has a new name.
inline Columns UpdatedColumns(bool isAudited) {
  Columns columns;
  for (int i = kNumber + 1; i < static_cast<int>(kOrderColumns.size()); ++i) {
    if (!isAudited || (i != kPartnerName && i != kPageFrequency)) columns.push_back(i);
  }
  return columns;
}

struct Update {
  bool setsPageFrequency;  // to 0
  Columns columns;         // to the ERP's values
  bool operator<(const Update& other) const {
    return setsPageFrequency != other.setsPageFrequency ? setsPageFrequency : columns < other.columns;
  }
};

inline std::string UpdateOrder(const Update& update) {
  std::string assignments = update.setsPageFrequency ? "minu=0" : "";
  for (const int column : update.columns) {
    assignments +=
        (assignments.empty() ? "" : ",") + std::string(kOrderColumns[static_cast<std::size_t>(column)].name) + "=?";
  }
  return "update tssoc200 set " + assignments + " where orno=?";
}

// The statement for an update, prepared once.
template <class Prepared>
class Updates {
 public:
  template <class Prepare>
  Prepared& For(const Update& update, const Prepare& prepare) {
    const auto known = statements_.find(update);
    return known != statements_.end() ? known->second : statements_.try_emplace(update, prepare(update)).first->second;
  }

 private:
  std::map<Update, Prepared> statements_;
};

// Local has Delete(orno), Insert(row), Change(update, row), and Find(orno), which returns false if there is no such
// order. Of the order that was found it has Partner(), Differs(row, column) and HasPageFrequency().
template <class Local>
class Changes {
 public:
  Changes(const std::string& orvan, Local& local, bool onlyDifferences)
      : erp_(ErpFile(orvan)), local_(local), onlyDifferences_(onlyDifferences) {}

  void Apply() {
    Statement entries = erp_.Prepare("select change, orno from audit_tssoc200 order by entry");
    Statement current = erp_.Prepare("select " + OrderColumns() + " from tssoc200 where orno=?");
    while (entries.Step()) {
      const std::string orno = entries.Text(1);
      if (*entries.Text(0) == 'D') {
        local_.Delete(orno);
        continue;
      }
      current.Bind(1, orno);
      if (!current.Step())
        throw std::runtime_error("order " + orno + " is gone: it should have been changed once only");
      if (!local_.Find(orno)) {
        local_.Insert(current);
      } else {
        Apply(current);
      }
      current.Reset();
    }
  }

 private:
  void Apply(const Statement& current) {
    const bool isAudited = local_.Partner() == current.Text(kPartner);
    const Columns& all = isAudited ? audited_ : whole_;
    if (!onlyDifferences_) return local_.Change({isAudited, all}, current);
    update_.columns.clear();
    for (const int column : all) {
      if (local_.Differs(current, column)) update_.columns.push_back(column);
    }
    update_.setsPageFrequency = isAudited && local_.HasPageFrequency();
    if (update_.setsPageFrequency || !update_.columns.empty()) local_.Change(update_, current);
  }

  const File erp_;
  Local& local_;
  const bool onlyDifferences_;
  const Columns audited_ = UpdatedColumns(true);
  const Columns whole_ = UpdatedColumns(false);
  Update update_;
};

}  // namespace reference
