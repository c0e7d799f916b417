#include "tests/copy/tables/plain_tables.h"

#include <ostream>
#include <sstream>

#include "platform/join.h"

namespace qmx::test {
namespace plain_tables {
namespace {

using Kind = PlainField::Kind;

PlainField Text(const char* getter, const char* column, const std::string& given) {
  return {getter, column, Kind::Text, given, '"' + given + '"'};
}
PlainField Whole(const char* getter, const char* column, const std::string& given, const std::string& stored) {
  return {getter, column, Kind::Whole, given, stored};
}
PlainField Whole(const char* getter, const char* column, const std::string& given) {
  return Whole(getter, column, given, given);
}
PlainField Code(const char* getter, const char* column, const std::string& given) {  // a number that becomes a text
  return Whole(getter, column, given, '"' + given + '"');
}
PlainField Real(const char* getter, const char* column, const std::string& given) {
  return {getter, column, Kind::Real, given, given};
}
PlainField Date(const char* getter, const char* column, const char* parts, const char* stored) {
  return {getter, column, Kind::Date, parts, stored};
}

Variant ValueOf(ScriptedErp& erp, const PlainField& field, int number) {
  const std::string given = Numbered(field.given, number);
  if (field.kind == Kind::Text) return given;
  if (field.kind == Kind::Real) return std::stod(given);
  if (field.kind == Kind::Whole) return static_cast<std::int16_t>(std::stoi(given));
  ErpDate date;
  std::istringstream(given) >> date.year >> date.month >> date.day >> date.hours >> date.minutes >> date.seconds;
  return erp.Date(date);
}

constexpr const char* kNine = "\"\", \"ZZZZZZZZZ\"";

const std::vector<PlainTable> kTables = {
    {"ServiceTypes",
     "tsmdm030",
     "ServiceTypes.ServiceTypesManager",
     "ServiceTypes.ServiceTypes",
     "List",
     "\"\", \"ZZZ\"",
     {Text("getServiceType", "cstp", "A#"), Text("getServiceTypeDescription", "dsca", "Repair#"),
      Text("getServiceProcedure", "prod", "P#"), Text("getavailabilityType", "ract", "D#")},
     1,
     {"\"cstp\" \"\" \"ZZZ\"", "desc proc ract"},
     " where cstp='A#'",
     " where cstp='A#'",
     "Copy Service Types:  Copy of Service Types from Orvan to Local DB failed",
     "Copy Service Types - Only Changed:  Copy of Service Types from Orvan to Local DB failed"},
    {"ServiceAreas",
     "tsmdm105",
     "ServiceAreas.ServiceAreasManager",
     "ServiceAreas.ServiceAreas",
     "List",
     "\"\", \"ZZZZZZZ\"",
     {Text("getServiceArea", "csar", "A#"), Text("getServiceAreaDescription", "dsca", "Area#"),
      Text("getServiceAreaType", "artp", "T#"), Text("getMainServiceArea", "cmsa", "M#"),
      Text("getServiceCenter", "cwoc", "C#"), Text("getWarehouse", "cwar", "W#"),
      Real("getAverageTravelingTime", "trti", "#.5"), Real("getAverageTravelingDistance", "dist", "#2.25"),
      Real("getCallOutCharge", "ccha", "4#.125"), Text("getCurrency", "CCur", "EU#"),
      Real("getLaborRate", "clrt", "3#.5")},
     1,
     {"\"csar\" \"\" \"ZZZZZZZZZ\"", "csar desc artp cmsa cwoc cwar trti dist ccha ccur clrt"},
     " where csar='A#'",
     " where csar='A#'",
     "Copy Service Areas:  Copy of Service Areas from Orvan to Local DB failed",
     "Copy Service Areas:  Copy of Service Areas from Orvan to Local DB failed"},
    {"Skills",
     "tsmdm130",
     "Skills.SkillsManager",
     "Skills.Skills",
     "List",
     kNine,
     {Text("getSkill", "skll", "W#"), Text("getdescription", "dsca", "Welding#"), Real("getLaborRate", "clrt", "#2.5")},
     1,
     {"\"skll\" \"\" \"ZZZZ\"", "skll desc clrt"},
     " where skll='W#'",
     " where skll='W#'",
     "Copy Service Skills:  Copy of Service Skills from Orvan to Local DB failed",
     "Copy Service Skills:  Copy of Service Skills from Orvan to Local DB failed"},
    {"SkillsByEmployee",
     "tsmdm135",
     "SkillsByEmployee.SkillsByEmployeeManager",
     "SkillsByEmployee.SkillsByEmployee",
     "List",
     "\"\", \"ZZZZZZZZZ\", \"\", \"ZZZZZZZZZ\", \"\", \"ZZZZZZZZZ\"",
     {Text("getserviceemployee", "emno", "E#"), Text("getSkill", "skll", "W#"), Text("getObjectGroup", "cogr", "G#"),
      Real("getSkillFactor", "afct", "#.75")},
     3,
     {"\"emno\" \"\" \"ZZZZZZ\"", "\"skll\" \"\" \"ZZZZ\"", "\"cogr\" \"\" \"ZZZZZZ\"", "emno skll cogr afct"},
     " where emno='E#' and   skll='W#' and   cogr='G#'",
     " where emno='E#' and   skll='W#' and   cogr='G#'",
     "Copy Service Skills by Employee:  Copy of Service Skilsl by Employee from Orvan to Local DB failed",
     "Copy Service Skills by Employee:  Copy of Service Skilsl by Employee from Orvan to Local DB failed"},
    {"ResponseTimes",
     "tsclm020",
     "ResponseTimes.ResponseTimesManager",
     "ResponseTimes.ResponseTimes",
     "List",
     kNine,
     {Text("getResponseTime", "crtc", "R#"), Text("getResponseTimeDescription", "dsca", "Within#"),
      Text("getCalendar", "ccal", "K#"), Real("getReactionPeriod", "rctt", "#.25"),
      Real("getSolutionStartPeriod", "enst", "#8.5"), Real("getSolutionFinishPeriod", "sltn", "2#.75")},
     1,
     {"\"crtc\" \"\" \"ZZZ\"", "crtc desc ccal rctt enst sltn"},
     " where crtc='R#'",
     " where crtc='R#'",
     "Copy Response Times:  Copy of Response Times from Orvan to Local DB failed",
     "Copy Service Response Times - Only Changed:  Copy of Service Response Times from Orvan to Local DB failed"},
    // The city is in the column that is called "Name".
    {"Addresses",
     "tccom130",
     "Addresses.AddressesManager",
     "Addresses.Addresses",
     "List",
     "\"\", \"ZZZZZZZZZZZZ\"",
     {Text("getAddressCode", "cadr", "AD#"), Text("getName", "nama", "Miller#"),
      Text("getAddress", "namc", "Main Street#"), Text("getHouseNumber", "hono", "12#"),
      Text("getCity", "Name", "Ede#"), Text("getZIPCodePostalCode", "pstc", "67#")},
     1,
     {"\"cadr\" \"\" \"ZZZZZZZZZ\"", "cadr nama namc hono name pstc"},
     " where cadr='AD#'",
     " where cadr='AD#'",
     "Copy Addresses:  Copy of Addresses from Orvan to Local DB failed",
     "Copy Addresses - Only Changed:  Copy of Addresses from Orvan to Local DB failed"},
    {"AvailabilityTypes",
     "tcccp001",
     "AvailabilityType.AvailabilityTypeManager",
     "AvailabilityType.AvailabilityType",
     "ListAllAvailable",
     "\"\", \"ZZZZZZ\"",
     {Text("getavailabilityType", "ract", "WRK#"), Text("getdescription", "dsca", "Work#"),
      Code("getplanTimeUnit", "ptmu", "#"), Real("getnoOfHoursPerDay", "hrsd", "#.5"),
      Code("getavailable", "avlb", "#0")},
     1,
     {"\"ract\" \"\" \"ZZZZZZ\"", "dsca avlb ptmu hrsd"},
     " where ract='WRK#'",
     " where ract='WRK#'",
     "Copy Availability Types:  Copy of Availability Types from Orvan to Local DB failed",
     "Copy Availability Type:  Copy of Availability Type from Orvan to Local DB failed"},
    // By change one Z less than in full: a code above them is seen by the full copy alone.
    {"Configurations",
     "tscfg220",
     "Configurations.ConfigurationsManager",
     "Configurations.Configurations",
     "List",
     "\"\", \"ZZZZZZZZZ\", \"\", \"ZZZZZZZZZ\", \"\", \"ZZZZZZZZZ\", \"\", \"ZZZZZZZZZ\"",
     {Text("getConfiguration", "ccfg", "CF#"), Text("getdescription", "dsca", "Plant#"),
      Text("getSoldToBusinessPartner", "ofbp", "BP#"), Text("getServiceCenter", "cwoc", "C#"),
      Text("getServiceArea", "csar", "A#"), Text("getResponsibleEngineer", "tecr", "R#"),
      Text("getPreferredEngineer1", "teca", "F#"), Text("getPreferredEngineer2", "tecb", "G#"),
      Text("getUsageClass", "cusc", "U#"), Text("getDistanceZone", "czon", "Z#"),
      Real("getTravelDistance", "dist", "#2.5"), Real("getTravelingTime", "trti", "#6.25"),
      Text("getCalendar", "ccal", "K#"), Text("getLocationAddress", "cadr", "AD#")},
     1,
     {"\"ccfg\" \"\" \"ZZZZZZZZ\"", "desc ofbp cwoc csar teca tecb cusc czon dist trti ccal cadr"},
     " where ccfg='CF#'",
     " WHERE ccfg = 'CF#'",
     "Copy Service Configurations:  Copy of Service Configurations from Orvan to Local DB failed",
     "Copy Service Configurations - Only Change:  Copy of Service Configurations from Orvan to Local DB failed"},
    {"ServiceObjects",
     "tscfg200",
     "ServiceObjects.ServiceObjectsManager",
     "ServiceObjects.ServiceObjects",
     "List",
     "\"\", \"ZZZZZZZZZ\", \"\", \"ZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZ\", 0, 9999",
     {Text("getConfiguration", "ccfg", "CF#"), Text("getServiceObject", "crob", "OB#"),
      Whole("getObjectNumber", "oseq", "#0"), Text("getdescription", "dsca", "Pump#"),
      Text("getObjectGroup", "cogr", "G#"), Text("getUsageClass", "cusc", "U#"),
      Text("getManufacturedBy", "manu", "M#"), Text("getCalendar", "ccal", "K#"),
      Text("getLocationAddress", "cdel", "AD#")},
     3,
     {"\"ccfg\" \"\" \"ZZZZZZZZ\"", "\"crob\" \"\" \"ZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZ\"",
      "\"oseq\" \"0000\" \"9999\"", "desc cogr cusc manu ccal cdel"},
     " where ccfg='CF#' and crob='OB#' and oseq= #0",
     " where ccfg='CF#' and crob='OB#' and oseq= #0",
     "Copy Service Objects:  Copy of Service Objects from Orvan to Local DB failed",
     "Copy Service Objects - Only Change:  Copy of Service Objects from Orvan to Local DB failed"},
    {"PlannedActivities",
     "tsspc200",
     "PlannedActivities.PlannedActivitiesManager",
     "PlannedActivities.PlannedActivities",
     "List",
     "\"\", \"ZZZZZZZZZ\", \"\", \"ZZZZZZZZZ\", 0, 9999",
     {Text("getConfiguration", "ccfg", "CF#"),
      Text("getActivity", "crac", "RA#"),
      Whole("getActivityNumber", "aseq", "#0"),
      Text("getdescription", "dsca", "Inspect#"),
      Text("getActivityGroup", "cagr", "AG#"),
      Text("getServiceType", "cstp", "T#"),
      Text("getServiceCenter", "cwoc", "C#"),
      Text("GetObject", "crob", "OB#"),
      Whole("getObjectNumber", "oseq", "4#"),
      Date("getEarliestStartTime", "esct", "126 2 29 1 0 #", "2026-03-29 01:00:0#"),
      Date("getPlannedStartTime", "psct", "126 2 29 2 0 #", "2026-03-29 02:00:0#"),
      Date("getPlannedFinishTime", "pfct", "126 2 29 3 0 #", "2026-03-29 03:00:0#"),
      Date("getLatestFinishTime", "lfct", "0 0 1 8 0 0", "null"),
      Real("getActivityDuration", "adur", "#.5"),
      Real("getTravelingTime", "trtm", "0.#5"),
      Text("getSkill1", "skla", "SA#"),
      Text("getSkill2", "sklb", "SB#"),
      Text("getSkill3", "sklc", "SC#"),
      Whole("getAppointment", "appo", "2", "0"),
      Code("getActivityStatus", "stat", "5#"),
      Text("getServiceOrder", "orno", "SO#"),
      Whole("getActivityLineNumber", "acln", "6#")},
     3,
     {"\"ccfg\" \"\" \"ZZZZZZZZZ\"", "\"crac\" \"\" \"ZZZZZZZZZ\"", "\"aseq\" \"0000\" \"9999\"",
      "desc cagr cstp cwoc crob oseq esct psct pfct lfct adur trtm skla sklb sklc orno acln stat appo"},
     " where ccfg='CF#' and  crac='RA#' and   aseq= #0",
     " where ccfg='CF#' and  crac='RA#' and   aseq= #0",
     "Copy Service Planned Activities:  Copy of Service Planned Activities from Orvan to Local DB failed",
     "Copy Service Planned Activities - Only Changed:  Copy of Service Planned Activities from Orvan to Local DB "
     "failed"},
    // A full copy fails with the orders' description.
    {"ServiceOrderActivities",
     "tssoc210",
     "ServiceOrderActivities.ServiceOrderActivitiesManager",
     "ServiceOrderActivities.ServiceOrderActivities",
     "List",
     "\"\", \"ZZZZZZZZZ\", 0, 9999",
     {Text("getServiceOrder", "orno", "SO#"),
      Whole("getActivityLineNumber", "acln", "#0"),
      Text("getReferenceActivity", "crac", "RA#"),
      Text("getdescription", "dsca", "Grease#"),
      Text("getServiceType", "cstp", "T#"),
      Text("getActivityGroup", "cagr", "AG#"),
      Text("getConfiguration", "ccfg", "CF#"),
      Text("GetObject", "crob", "OB#"),
      Whole("getObjectNumber", "oseq", "4#"),
      Text("getCall", "ccll", "CA#"),
      Text("getResponseTime", "crtc", "RT#"),
      Code("getProblemPriority", "prpr", "5#"),
      Code("getCustomerPriority", "cupr", "6#"),
      Code("getObjectPriority", "obpr", "7#"),
      Text("getProblem", "cprl", "PB#"),
      Text("getSolution", "cstn", "SL#"),
      Code("getActivityStatus", "asta", "8#"),
      Text("getSkill1", "skla", "SA#"),
      Text("getSkill2", "sklb", "SB#"),
      Text("getSkill3", "sklc", "SC#"),
      Real("getActivityDuration", "acdu", "#.75"),
      Whole("getAppointment", "appo", "1"),
      Date("getPlannedStartTime", "pstm", "126 10 20 1 30 #", "2026-11-20 01:30:0#"),
      Date("getPlannedFinishTime", "pftm", "126 10 20 2 30 #", "2026-11-20 02:30:0#"),
      Date("getPlannedEarliestStartTime", "estm", "0 0 0 0 0 0", "null"),
      Date("getPlannedLatestFinishTime", "lftm", "126 10 20 4 30 #", "2026-11-20 04:30:0#"),
      Date("getExecutionStartTime", "astm", "126 10 20 5 30 #", "2026-11-20 05:30:0#"),
      Date("getExecutionFinishTime", "aftm", "126 10 20 6 30 #", "2026-11-20 06:30:0#")},
     2,
     {"\"orno\" \"\" \"ZZZZZZZZZ\"", "\"acln\" \"0000\" \"9999\"",
      "asta desc crac cstp cagr ccfg crob oseq ccll crtc prpr cupr obpr cprl cstn skla sklb sklc acdu appo pstm pftm "
      "estm lftm astm aftm"},
     " where orno='SO#' and   acln= #0",
     " where orno='SO#' and   acln= #0",
     "Copy Service Orders Activities - Full Copy:  Copy of Service Orders from Orvan to Local DB failed",
     "Copy Service Orders Activities- Only Changed:  Copy of Service Orders Activities from Orvan to Local DB failed"},
    // The mapper writes "Line", the criteria and the WHERE text have "line": one column.
    {"ServiceOrderEngineers",
     "tssoc205",
     "ServiceOrderEngineers.ServiceOrderEngineersManager",
     "ServiceOrderEngineers.ServiceOrderEngineers",
     "List",
     "\"\", \"ZZZZZZZZZ\", 0, 9999",
     {Text("getServiceOrder", "orno", "SO#"), Whole("getLineNumber", "Line", "#"),
      Text("getServiceEngineer", "emno", "E#"), Whole("getActivity", "acln", "#0")},
     2,
     {"\"orno\" \"\" \"ZZZZZZZZZ\"", "\"line\" \"0000\" \"9999\"", "emno acln"},
     " where orno='SO#' and   line= #",
     " where orno='SO#' and   line= #",
     "Copy Service Order Engineers:  Copy of Service Order Engineers from Orvan to Local DB failed",
     "Copy Service Order Engineers - Only Changed:  Copy of Service Order Engineers from Orvan to Local DB failed"}};

}  // namespace
}  // namespace plain_tables

Getters PlainTable::Record(ScriptedErp& erp, int number) const {
  Getters getters;
  for (const PlainField& field : fields) getters.emplace(field.getter, plain_tables::ValueOf(erp, field, number));
  return getters;
}

Getters PlainTable::Key(ScriptedErp& erp, int number) const {
  Getters getters;
  for (std::size_t key = 0; key < keys; ++key) {
    getters.emplace(fields[key].getter, plain_tables::ValueOf(erp, fields[key], number));
  }
  return getters;
}

std::string PlainTable::Row(int number) const {
  return Joined(fields, ", ", [&](const PlainField& field) { return Numbered(field.stored, number); });
}

std::vector<std::string> PlainTable::Columns() const {
  std::vector<std::string> columns;
  for (const PlainField& field : fields) columns.emplace_back(field.column);
  return columns;
}

std::ostream& operator<<(std::ostream& out, const PlainTable& table) { return out << table.name; }

const std::vector<PlainTable>& PlainTables() { return plain_tables::kTables; }

std::string Numbered(std::string text, int number) {
  for (std::size_t at = 0; (at = text.find('#', at)) != std::string::npos;) text.replace(at, 1, std::to_string(number));
  return text;
}

}  // namespace qmx::test
