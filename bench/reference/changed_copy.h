// A changed copy of the service orders with nothing above the databases' own interfaces: the ERP's audit entries in
// their order, each one a delete, or a select by key and then an insert or an update.
//
// As in the program's copy, an order that is known and keeps its partner keeps the partner's name too, and its page
// frequency becomes 0: the audit trail carries neither.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "bench/reference/service_orders.h"

namespace reference {

enum class Update { Audited, Whole };

inline std::vector<int> UpdatedColumns(Update update) {
  std::vector<int> columns;
  for (int i = kNumber + 1; i < static_cast<int>(kOrderColumns.size()); ++i) {
    if (update == Update::Whole || (i != kPartnerName && i != kPageFrequency)) columns.push_back(i);
  }
  return columns;
}

inline std::string UpdateOrder(Update update) {
  std::string assignments = update == Update::Audited ? "minu=0" : "";
  for (const int column : UpdatedColumns(update)) {
    assignments +=
        (assignments.empty() ? "" : ",") + std::string(kOrderColumns[static_cast<std::size_t>(column)].name) + "=?";
  }
  return "update tssoc200 set " + assignments + " where orno=?";
}

// Local has Delete(orno), Partner(orno), none where there is no such order, Insert(row) and Update(how, row).
template <class Local>
void ApplyChanges(const std::string& orvan, Local& local) {
  const File erp = ErpFile(orvan);
  Statement entries = erp.Prepare("select change, orno from audit_tssoc200 order by entry");
  Statement current = erp.Prepare("select " + OrderColumns() + " from tssoc200 where orno=?");
  while (entries.Step()) {
    const std::string orno = entries.Text(1);
    if (*entries.Text(0) == 'D') {
      local.Delete(orno);
      continue;
    }
    current.Bind(1, orno);
    if (!current.Step()) throw std::runtime_error("order " + orno + " is gone: it should have been changed once only");
    if (const std::optional<std::string> partner = local.Partner(orno); !partner) {
      local.Insert(current);
    } else {
      local.Update(*partner == current.Text(kPartner) ? Update::Audited : Update::Whole, current);
    }
    current.Reset();
  }
}

}  // namespace reference
