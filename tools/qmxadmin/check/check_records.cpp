#include "tools/qmxadmin/check/check_records.h"

#include <fmt/format.h>

#include "platform/error.h"
#include "tools/qmxadmin/copied_tables.h"
#include "tools/qmxadmin/verify/erp_copy.h"

namespace qmx {
namespace {

constexpr const char* kCalendars = "tcccp030";
constexpr const char* kCorrectIt = "Correct the ERP's component server. The copies would fail in the same way.";

// The copy's own errors say only which step failed. The cause is behind them.
const Error& FirstCause(const Error& error) { return error.Cause() ? FirstCause(*error.Cause()) : error; }

std::int64_t CountRows(DriverSession& rows, const std::string& table) {
  const auto statement = rows.Prepare("select count(*) from " + table);
  statement->Step();
  return static_cast<std::int64_t>(statement->Value(0).ToDouble());
}

}  // namespace

void CheckRecord(const std::string& table, const std::string& businessComponent,
                 const std::vector<std::string>& calendars, FindingSink& findings) {
  const std::string what = fmt::format("record of {}", table);
  if (table == kCalendars && calendars.empty()) {
    findings.NotChecked(what, "no local service employee has a calendar");
    return;
  }
  try {
    const std::vector<std::string> listed = table == kCalendars ? calendars : std::vector<std::string>();
    const ErpCopy copy(CopiedTable(table), businessComponent, listed, ErpCopy::Extent::OneRecordAndAudit);
    if (CountRows(copy.Rows(), table) == 0) {
      findings.NotChecked(what, "the ERP lists no record, so no getter was called; the audit trail can be read");
    } else {
      findings.Good(what, "one record and the audit trail can be read");
    }
    copy.Rows().Close();
  } catch (const Error& error) {
    findings.Wrong(what, DescribeChain(FirstCause(error)), kCorrectIt);
  }
}

}  // namespace qmx
