// Planned activities, tsspc200.
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"

namespace qmx {
namespace {

constexpr const char* kManager = "PlannedActivities.PlannedActivitiesManager";

const FieldMaps kFields = {
    {"ccfg", "getConfiguration"},
    {"crac", "getActivity"},
    {"aseq", "getActivityNumber"},
    {"dsca", "getdescription"},
    {"cagr", "getActivityGroup"},
    {"cstp", "getServiceType"},
    {"cwoc", "getServiceCenter"},
    {"crob", "GetObject"},
    {"oseq", "getObjectNumber"},
    {"esct", "getEarliestStartTime", Conversion::DateTime},
    {"psct", "getPlannedStartTime", Conversion::DateTime},
    {"pfct", "getPlannedFinishTime", Conversion::DateTime},
    {"lfct", "getLatestFinishTime", Conversion::DateTime},
    {"adur", "getActivityDuration"},
    {"trtm", "getTravelingTime"},
    {"skla", "getSkill1"},
    {"sklb", "getSkill2"},
    {"sklc", "getSkill3"},
    {"appo", "getAppointment", Conversion::YesNo},
    {"stat", "getActivityStatus"},
    {"orno", "getServiceOrder"},
    {"acln", "getActivityLineNumber"},
};

const KeyCondition kKey = {
    {" where ccfg='", "getConfiguration", "'"},
    {" and  crac='", "getActivity", "'"},
    {" and   aseq= ", "getActivityNumber", ""},
};

const FullCopyPattern kFull = {
    .manager = kManager,
    .list = "List",
    .bounds = {"", "ZZZZZZZZZ", "", "ZZZZZZZZZ", std::int16_t{0}, std::int16_t{9999}},
    .key = {"ccfg", "crac", "aseq"},
    .failure = {"Copy Service Planned Activities", " Copy of Service Planned Activities from Orvan to Local DB failed"},
};

const ChangedCopyPattern kChanged = {
    .manager = kManager,
    .record = "PlannedActivities.PlannedActivities",
    .parameters = {{"ccfg", "", "ZZZZZZZZZ"}, {"crac", "", "ZZZZZZZZZ"}, {"aseq", "0000", "9999"}},
    .outputFields = {"desc", "cagr", "cstp", "cwoc", "crob", "oseq", "esct", "psct", "pfct", "lfct", "adur", "trtm",
                     "skla", "sklb", "sklc", "orno", "acln", "stat", "appo"},
    .selectKey = kKey,
    .deleteKey = kKey,
    .failure = {"Copy Service Planned Activities - Only Changed",
                " Copy of Service Planned Activities from Orvan to Local DB failed"},
};

}  // namespace

ErpListing PlannedActivitiesInErp() { return {"tsspc200", kManager, kChanged.record, kFull.list, kFull.bounds}; }

void clsDataCopy::CopyPlannedActivities(const std::string& tableCode, const std::string& busComponent,
                                        std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopyPlannedActivitiesFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopyPlannedActivitiesChanged(tableCode, busComponent);
}

void clsDataCopy::CopyPlannedActivitiesFull(const std::string& tableCode, const std::string& busComponent) {
  CopyFull(kFull, tableCode, busComponent, &clsDataCopy::SetPlannedActivityFields);
}

void clsDataCopy::CopyPlannedActivitiesChanged(const std::string& tableCode, const std::string& busComponent) {
  CopyChanged(kChanged, tableCode, busComponent, &clsDataCopy::SetPlannedActivityFields);
}

void clsDataCopy::SetPlannedActivityFields(Recordset& row, const Object& record) { SetFields(kFields, row, record); }

}  // namespace qmx
