#include "tests/component_faults/copy_subjects.h"

#include <algorithm>
#include <stdexcept>

#include "tests/copy/faults/copied_tables.h"
#include "tests/copy/tables/plain_tables.h"

namespace qmx::test {
namespace {

std::string NameOf(const char* table, std::int16_t syncMethod) {
  return table + std::string(syncMethod == kFullCopy ? " in full" : " by change");
}

// A table whose copies are the shared steps and nothing else. The getters give the types of the columns.
CopySubject OfPlainTable(const PlainTable& table, std::int16_t syncMethod) {
  return {.name = NameOf(table.code, syncMethod),
          .request = table.code,
          .table = table.code,
          .columns = table.Columns(),
          .prepare = [&table, syncMethod](CalendarRig& rig) {
            ScriptedErp& erp = rig.erp;
            rig.ControlRecord(table.code, syncMethod, "2026-11-19");
            erp.Lists(table.manager, {table.Record(erp, 1), table.Record(erp, 2)}, table.listing);
            erp.Audits(table.record,
                       {Inserted(table.Record(erp, 1)), Updated(table.Record(erp, 2)), Deleted(table.Key(erp, 3))});
          }};
}

// A table with more to it, such as records that are read again.
CopySubject OfTable(const CopiedTable& table, std::int16_t syncMethod) {
  return {.name = NameOf(table.code, syncMethod),
          .request = table.code,
          .table = table.code,
          .columns = table.columns,
          .prepare = [&table, syncMethod](CalendarRig& rig) { PrepareCopyOf(table, syncMethod, rig); }};
}

const CopiedTable& ServiceCenters() {
  static const CopiedTable table = {.code = "tsmdm100",
                                    .manager = "ServiceCenters.ServiceCentersManager",
                                    .record = "ServiceCenters.ServiceCenters",
                                    .fullFailure = {"", ""},
                                    .changedFailure = {"", ""},
                                    .key =
                                        [](const std::string& row) {
                                          return Getters{{"getServiceCentersCode", row}};
                                        },
                                    .localRows = "(cwoc, dsca) values ('B', 'old'), ('D', 'old')",
                                    .columns = {"cwoc", "dsca"},
                                    .shown = {}};
  return table;
}

bool IsPlain(const CopiedTable& table) {
  return std::ranges::any_of(PlainTables(),
                             [&](const PlainTable& plain) { return plain.code == std::string(table.code); });
}

CopySubject OfCalendars(const std::string& name, const std::string& request, std::int16_t syncMethod) {
  return {.name = "calendars " + name,
          .request = request,
          .table = kCalendars,
          .columns = {"ccal", "stdt", "sttm", "entm"},
          .prepare = [syncMethod](CalendarRig& rig) { rig.HasCalendarsToCopy(syncMethod); }};
}

}  // namespace

const std::vector<CopySubject>& CopySubjects() {
  static const std::vector<CopySubject> subjects = [] {
    std::vector<CopySubject> all;
    for (const std::int16_t method : {kFullCopy, kOnlyChanged}) {
      for (const PlainTable& table : PlainTables()) all.push_back(OfPlainTable(table, method));
      all.push_back(OfTable(ServiceCenters(), method));
      for (const CopiedTable& table : TablesUnderFaults()) {
        if (!IsPlain(table)) all.push_back(OfTable(table, method));
      }
    }
    all.push_back(OfCalendars("in full", kCalendars, kFullCopy));
    all.push_back(OfCalendars("by change", kCalendars, kOnlyChanged));
    all.push_back(OfCalendars("of an employee", "tcccp030=4711=E", kFullCopy));
    all.push_back(OfCalendars("by code", "tcccp030=DAY=C", kFullCopy));
    return all;
  }();
  return subjects;
}

const CopySubject& SubjectNamed(const std::string& name) {
  const auto found = std::ranges::find(CopySubjects(), name, &CopySubject::name);
  if (found == CopySubjects().end()) throw std::invalid_argument(name);
  return *found;
}

std::string NameOfSubject(const testing::TestParamInfo<CopySubject>& instance) {
  std::string name = instance.param.name;
  std::ranges::replace(name, ' ', '_');
  return name;
}

}  // namespace qmx::test
