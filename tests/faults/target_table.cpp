#include "tests/faults/target_table.h"

#include <algorithm>

#include "tests/support/row_texts.h"

namespace qmx::test::faults {

void TargetTable::Fill(Connection& connection, const Rows& old) {
  for (const std::string& row : old) {
    std::string values = row;
    for (std::size_t bar = values.find('|'); bar != std::string::npos; bar = values.find('|', bar))
      values.replace(bar, 1, "','");
    connection.Execute("insert into tsmdm030 (cstp, dsca, prod, ract) values ('" + values + "')");
  }
}

std::string TargetTable::ControlRecord(Method method) {
  return "insert into tstables (tablename, in_use, syme, lutm) values ('tsmdm030', 0, " +
         std::to_string(static_cast<int>(method)) + ", '" + kOldTime + "')";
}

void TargetTable::LookAtRows(Connection& connection, Left& left) {
  left.rows = RowTexts(connection, "select cstp, dsca, prod, ract from tsmdm030", 4);
  std::ranges::sort(left.rows, {}, [](const std::string& row) { return row.substr(0, row.find('|')); });
  const Rows control = RowTexts(connection, "select in_use, lutm from tstables where tablename = 'tsmdm030'", 2);
  const std::string record = control.size() == 1 ? control[0] : "no record|";
  left.inUse = record.substr(0, record.find('|'));
  left.lutm = record.substr(record.find('|') + 1);
}

}  // namespace qmx::test::faults
