#include "tools/qmxadmin/verify/line_report.h"

#include <fmt/format.h>

#include "tools/qmxadmin/text_width.h"

namespace qmx {
namespace {

// Doubles show all their digits, so that two different numbers never look alike.
std::string Shown(const Variant& value) {
  if (value.IsNull()) return "null";
  if (value.GetKind() == Variant::Kind::Double) return fmt::format("{}", value.ToDouble());
  return value.IfText() ? fmt::format("'{}'", value.ToText()) : value.ToText();
}

}  // namespace

void LineReport::Write(const Difference& difference) {
  const std::vector<LocalColumn>& columns = Table().columns;
  std::vector<std::string> key, values;
  for (const std::size_t column : KeyColumns())
    key.push_back(fmt::format("{}={}", columns[column].name, Shown(difference.Key()[column])));
  for (const std::size_t column : difference.columns) {
    values.push_back(fmt::format("{} is {}, in the ERP {}", columns[column].name, Shown((*difference.local)[column]),
                                 Shown((*difference.erp)[column])));
  }
  std::string line = fmt::format("{} {}: {}", Table().name, kDifferenceWords[difference.kind], fmt::join(key, ", "));
  if (!values.empty()) line += fmt::format(": {}", fmt::join(values, "; "));
  if (difference.kind == kRepeated) line += fmt::format(" is listed {} times", difference.times);
  Out() << Printable(line) << '\n';
}

void LineReport::WriteSummary(const ComparedRows& rows) {
  std::vector<std::string> found;
  for (int kind = 0; kind < kDifferenceKinds; ++kind) {
    if (CountOf(kind) > 0) found.push_back(fmt::format("{} {}", CountOf(kind), kDifferenceWords[kind]));
  }
  if (quiet_ && found.empty()) return;
  Out() << fmt::format("{}: {} in the ERP, {} here: {}", Table().name, rows.erp, rows.local,
                       found.empty() ? "no difference" : fmt::format("{}", fmt::join(found, ", ")));
  if (rows.older > 0) Out() << fmt::format("; {} local rows are older than the period that the ERP lists", rows.older);
  if (rows.erp == 0 && rows.local > 0) Out() << "; the ERP lists nothing, and a full copy would keep these rows";
  Out() << std::endl;  // at once, because the next table may take long
}

}  // namespace qmx
