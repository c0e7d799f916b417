// Service order activities, tssoc210.
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"

namespace qmx {
namespace {

constexpr const char* kManager = "ServiceOrderActivities.ServiceOrderActivitiesManager";

const FieldMaps kFields = {
    {"orno", "getServiceOrder"},
    {"acln", "getActivityLineNumber"},
    {"crac", "getReferenceActivity"},
    {"dsca", "getdescription"},
    {"cstp", "getServiceType"},
    {"cagr", "getActivityGroup"},
    {"ccfg", "getConfiguration"},
    {"crob", "GetObject"},
    {"oseq", "getObjectNumber"},
    {"ccll", "getCall"},
    {"crtc", "getResponseTime"},
    {"prpr", "getProblemPriority"},
    {"cupr", "getCustomerPriority"},
    {"obpr", "getObjectPriority"},
    {"cprl", "getProblem"},
    {"cstn", "getSolution"},
    {"asta", "getActivityStatus"},
    {"skla", "getSkill1"},
    {"sklb", "getSkill2"},
    {"sklc", "getSkill3"},
    {"acdu", "getActivityDuration"},
    {"appo", "getAppointment", Conversion::YesNo},
    {"pstm", "getPlannedStartTime", Conversion::DateTime},
    {"pftm", "getPlannedFinishTime", Conversion::DateTime},
    {"estm", "getPlannedEarliestStartTime", Conversion::DateTime},
    {"lftm", "getPlannedLatestFinishTime", Conversion::DateTime},
    {"astm", "getExecutionStartTime", Conversion::DateTime},
    {"aftm", "getExecutionFinishTime", Conversion::DateTime},
};

const KeyCondition kKey = {
    {" where orno='", "getServiceOrder", "'"},
    {" and   acln= ", "getActivityLineNumber", ""},
};

const FullCopyPattern kFull = {
    .manager = kManager,
    .list = "List",
    .bounds = {"", "ZZZZZZZZZ", std::int16_t{0}, std::int16_t{9999}},
    .key = {"orno", "acln"},
    .failure = {"Copy Service Orders Activities - Full Copy", " Copy of Service Orders from Orvan to Local DB failed"},
};

const ChangedCopyPattern kChanged = {
    .manager = kManager,
    .record = "ServiceOrderActivities.ServiceOrderActivities",
    .parameters = {{"orno", "", "ZZZZZZZZZ"}, {"acln", "0000", "9999"}},
    .outputFields = {"asta", "desc", "crac", "cstp", "cagr", "ccfg", "crob", "oseq", "ccll",
                     "crtc", "prpr", "cupr", "obpr", "cprl", "cstn", "skla", "sklb", "sklc",
                     "acdu", "appo", "pstm", "pftm", "estm", "lftm", "astm", "aftm"},
    .selectKey = kKey,
    .deleteKey = kKey,
    .failure = {"Copy Service Orders Activities- Only Changed",
                " Copy of Service Orders Activities from Orvan to Local DB failed"},
};

}  // namespace

ErpListing ServiceOrderActivitiesInErp() { return {"tssoc210", kManager, kChanged.record, kFull.list, kFull.bounds}; }

void clsDataCopy::CopyServiceOrderActivities(const std::string& tableCode, const std::string& busComponent,
                                             std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopyServiceOrderActivitiesFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopyServiceOrderActivitiesChanged(tableCode, busComponent);
}

void clsDataCopy::CopyServiceOrderActivitiesFull(const std::string& tableCode, const std::string& busComponent) {
  CopyFull(kFull, tableCode, busComponent, &clsDataCopy::SetServiceOrderActivityFields);
}

void clsDataCopy::CopyServiceOrderActivitiesChanged(const std::string& tableCode, const std::string& busComponent) {
  CopyChanged(kChanged, tableCode, busComponent, &clsDataCopy::SetServiceOrderActivityFields);
}

void clsDataCopy::SetServiceOrderActivityFields(Recordset& row, const Object& record) {
  SetFields(kFields, row, record);
}

}  // namespace qmx
