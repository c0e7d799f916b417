#include "tests/copy/faults/copied_tables.h"

namespace qmx::test {

const std::vector<CopiedTable>& TablesUnderFaults() {
  static const std::vector<CopiedTable> tables = {
      {.code = "tsmdm030",
       .manager = "ServiceTypes.ServiceTypesManager",
       .record = "ServiceTypes.ServiceTypes",
       .fullFailure = {"Copy Service Types", " Copy of Service Types from Orvan to Local DB failed"},
       .changedFailure = {"Copy Service Types - Only Changed", " Copy of Service Types from Orvan to Local DB failed"},
       .key =
           [](const std::string& row) {
             return Getters{{"getServiceType", row}};
           },
       .localRows = "(cstp, dsca) values ('B', 'old'), ('D', 'old')",
       .columns = {"cstp", "dsca"},
       .shown = [](auto& row, auto& value) { return Quoted(row) + ", " + Quoted(value); }},
      {.code = "tcccp001",
       .manager = "AvailabilityType.AvailabilityTypeManager",
       .record = "AvailabilityType.AvailabilityType",
       .listing = "ListAllAvailable",
       .fullFailure = {"Copy Availability Types", " Copy of Availability Types from Orvan to Local DB failed"},
       .changedFailure = {"Copy Availability Type", " Copy of Availability Type from Orvan to Local DB failed"},
       .key =
           [](const std::string& row) {
             return Getters{{"getavailabilityType", row}};
           },
       .localRows = "(ract, dsca) values ('B', 'old'), ('D', 'old')",
       .columns = {"ract", "dsca"},
       .shown = [](auto& row, auto& value) { return Quoted(row) + ", " + Quoted(value); }},
      {.code = "tsmdm135",
       .manager = "SkillsByEmployee.SkillsByEmployeeManager",
       .record = "SkillsByEmployee.SkillsByEmployee",
       .fullFailure = {"Copy Service Skills by Employee",
                       " Copy of Service Skilsl by Employee from Orvan to Local DB failed"},
       .changedFailure = {"Copy Service Skills by Employee",
                          " Copy of Service Skilsl by Employee from Orvan to Local DB failed"},
       .key =
           [](const std::string& row) {
             return Getters{{"getserviceemployee", row}, {"getSkill", "S"}};
           },
       .localRows = "(emno, skll, cogr, afct) values ('B', 'S', '7', 1), ('D', 'S', '7', 1)",
       .columns = {"emno", "skll", "cogr", "afct"},
       .shown = [](auto& row,
                   auto& value) { return Quoted(row) + ", \"S\", \"7\", " + (value == "old" ? "1.0" : "7.0"); }},
      {.code = "tsmdm140",
       .manager = "ServiceEmployees.ServiceEmployeesManager",
       .record = "ServiceEmployees.ServiceEmployees",
       .fullFailure = {"Copy Service Employees", " Copy of Service Employees from Orvan to Local DB failed"},
       .changedFailure = {"Copy Service Employees", " Copy of Service Employees from Orvan to Local DB failed"},
       .key =
           [](const std::string& row) {
             return Getters{{"getserviceemployee", row}};
           },
       .localRows = "(emno, dsca) values ('B', 'old'), ('D', 'old')",
       .columns = {"emno", "dsca"},
       .shown = [](auto& row, auto& value) { return Quoted(row) + ", " + Quoted(value); }},
      {.code = "tsclm024",
       .manager = "PriorityTimeScale.PriorityTimeScaleManager",
       .record = "PriorityTimeScale.PriorityTimeScale",
       .fullFailure = {"Copy Priority Time Scales", " Copy of Priority Time Scales from Orvan to Local DB failed"},
       .changedFailure = {"Copy Service Priority Time Scales - Only Changed",
                          " Copy of Service Priority Time Scales from Orvan to Local DB failed"},
       .key =
           [](const std::string& row) {
             return Getters{{"getSolutionTimeInMinutes", double(row[0])}};
           },
       .localRows = "(sltt, dsca) values (66, 'old'), (68, 'old')",
       .columns = {"sltt", "dsca"},
       .shown = [](auto& row, auto& value) { return std::to_string(int(row[0])) + ".0, " + Quoted(value); }},
      {.code = "tscfg220",
       .manager = "Configurations.ConfigurationsManager",
       .record = "Configurations.Configurations",
       .fullFailure = {"Copy Service Configurations", " Copy of Service Configurations from Orvan to Local DB failed"},
       .changedFailure = {"Copy Service Configurations - Only Change",
                          " Copy of Service Configurations from Orvan to Local DB failed"},
       .key =
           [](const std::string& row) {
             return Getters{{"getConfiguration", row}};
           },
       .localRows = "(ccfg, dsca) values ('B', 'old'), ('D', 'old')",
       .columns = {"ccfg", "dsca"},
       .shown = [](auto& row, auto& value) { return Quoted(row) + ", " + Quoted(value); }},
      {.code = "tscfg200",
       .manager = "ServiceObjects.ServiceObjectsManager",
       .record = "ServiceObjects.ServiceObjects",
       .fullFailure = {"Copy Service Objects", " Copy of Service Objects from Orvan to Local DB failed"},
       .changedFailure = {"Copy Service Objects - Only Change",
                          " Copy of Service Objects from Orvan to Local DB failed"},
       .key =
           [](const std::string& row) {
             return Getters{{"getServiceObject", row}};
           },
       .localRows = "(ccfg, crob, oseq, dsca) values ('7', 'B', 7, 'old'), ('7', 'D', 7, 'old')",
       .columns = {"ccfg", "crob", "oseq", "dsca"},
       .shown = [](auto& row, auto& value) { return "\"7\", " + Quoted(row) + ", 7, " + Quoted(value); }},
      {.code = "tssoc200",
       .manager = "ServiceOrders.ServiceOrdersManager",
       .record = "ServiceOrders.ServiceOrders",
       .listing = "listServiceOrders",
       .fullFailure = {"Copy Service Orders", " Copy of Service Orders from Orvan to Local DB failed"},
       .changedFailure = {"Copy Service Orders - Only Changed",
                          " Copy of Service Orders from Orvan to Local DB failed"},
       .key =
           [](const std::string& row) {
             return Getters{{"getServiceOrder", row}};
           },
       .dates = {"getOrderDate", "getPlannedStartTime", "getPlannedFinishTime", "getPlannedEarliestStartTime",
                 "getPlannedLatestFinishTime", "getActualTravelStartTime", "getExecutionStartTime",
                 "getExecutionFinishTime", "getDispatchTime"},
       .localRows = "(orno, stna) values ('B', 'old'), ('D', 'old')",
       .columns = {"orno", "stna"},
       .shown = [](auto& row, auto& value) { return Quoted(row) + ", " + Quoted(value); }},
      {.code = "tssoc210",
       .manager = "ServiceOrderActivities.ServiceOrderActivitiesManager",
       .record = "ServiceOrderActivities.ServiceOrderActivities",
       .fullFailure = {"Copy Service Orders Activities - Full Copy",
                       " Copy of Service Orders from Orvan to Local DB failed"},
       .changedFailure = {"Copy Service Orders Activities- Only Changed",
                          " Copy of Service Orders Activities from Orvan to Local DB failed"},
       .key =
           [](const std::string& row) {
             return Getters{{"getServiceOrder", row}};
           },
       .dates = {"getPlannedStartTime", "getPlannedFinishTime", "getPlannedEarliestStartTime",
                 "getPlannedLatestFinishTime", "getExecutionStartTime", "getExecutionFinishTime"},
       .localRows = "(orno, acln, dsca) values ('B', 7, 'old'), ('D', 7, 'old')",
       .columns = {"orno", "acln", "dsca"},
       .shown = [](auto& row, auto& value) { return Quoted(row) + ", 7, " + Quoted(value); }},
      {.code = "tssoc205",
       .manager = "ServiceOrderEngineers.ServiceOrderEngineersManager",
       .record = "ServiceOrderEngineers.ServiceOrderEngineers",
       .fullFailure = {"Copy Service Order Engineers",
                       " Copy of Service Order Engineers from Orvan to Local DB failed"},
       .changedFailure = {"Copy Service Order Engineers - Only Changed",
                          " Copy of Service Order Engineers from Orvan to Local DB failed"},
       .key =
           [](const std::string& row) {
             return Getters{{"getServiceOrder", row}};
           },
       .localRows = "(orno, line, emno) values ('B', 7, 'old'), ('D', 7, 'old')",
       .columns = {"orno", "line", "emno"},
       .shown = [](auto& row, auto& value) { return Quoted(row) + ", 7, " + Quoted(value); }},
      {.code = "tsspc200",
       .manager = "PlannedActivities.PlannedActivitiesManager",
       .record = "PlannedActivities.PlannedActivities",
       .fullFailure = {"Copy Service Planned Activities",
                       " Copy of Service Planned Activities from Orvan to Local DB failed"},
       .changedFailure = {"Copy Service Planned Activities - Only Changed",
                          " Copy of Service Planned Activities from Orvan to Local DB failed"},
       .key =
           [](const std::string& row) {
             return Getters{{"getActivity", row}};
           },
       .dates = {"getEarliestStartTime", "getPlannedStartTime", "getPlannedFinishTime", "getLatestFinishTime"},
       .localRows = "(ccfg, crac, aseq, dsca) values ('7', 'B', 7, 'old'), ('7', 'D', 7, 'old')",
       .columns = {"ccfg", "crac", "aseq", "dsca"},
       .shown = [](auto& row, auto& value) { return "\"7\", " + Quoted(row) + ", 7, " + Quoted(value); }},
  };
  return tables;
}

Getters ErpRecord(const CopiedTable& table, const std::string& row, ScriptedErp& erp) {
  Getters getters = table.key(row);
  for (const std::string& date : table.dates) getters.insert({date, erp.Date({126, 10, 20, 8, 0, 0})});
  getters.insert({kAnyOther, "7"});
  return getters;
}

void PrepareCopyOf(const CopiedTable& table, std::int16_t syncMethod, CopyRig& rig) {
  rig.ControlRecord(table.code, syncMethod, "2026-11-19");
  rig.Sql(std::string("insert into ") + table.code + ' ' + table.localRows);
  const auto record = [&table, &rig](const std::string& row) { return ErpRecord(table, row, rig.erp); };
  rig.erp.ListsBy(
      table.manager,
      [record, isFull = syncMethod == kFullCopy](ScriptedObject::Arguments bounds) {
        const Variant first = bounds.empty() ? Variant() : bounds[0].Value();
        if (isFull) return std::vector<Getters>{record("A"), record("B")};
        return std::vector<Getters>{record(first.ToText())};  // a re-reading
      },
      table.listing);
  rig.erp.Audits(table.record, {Inserted(record("A")), Updated(record("B")), Deleted(record("D"))});
}

}  // namespace qmx::test
