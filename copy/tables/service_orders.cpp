// Service orders, tssoc200.
//
// Only the listing has the sold-to partner's name, so an order that is new or has another partner is read again from
// the listing. Otherwise, or if the listing does not have it, the name stays unchanged.
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"

namespace qmx {
namespace {

constexpr const char* kManager = "ServiceOrders.ServiceOrdersManager";

const Member kList = "listServiceOrders";
const Member kGetKey = "getServiceOrder";
const Member kGetPartner = "getSoldToBusinessPartner";
const Column kPartner = "ofbp";

const FieldMaps kFieldsBeforeName = {
    {"orno", kGetKey},
    {"ccfg", "getConfiguration"},
    {"ofbp", kGetPartner},
};
const FieldMap kName = {"stna", "getSoldToBusinessPartnerName"};
const FieldMaps kFieldsAfterName = {
    {"lcad", "getLocationAddress"},
    {"cprj", "getProject"},
    {"ordt", "getOrderDate", Conversion::DateTime},
    {"osta", "getOrderStatus"},
    {"cwoc", "getServiceCenter"},
    {"csar", "getServiceArea"},
    {"emno", "getServiceEngineer"},
    {"blyn", "getBlocked", Conversion::YesNo},
    {"ityn", "getInterrupted", Conversion::YesNo},
    {"crit", "getInterruptionReason"},
    {"ordu", "getOrderDuration"},
    {"tvdu", "getTravelDuration"},
    {"pstm", "getPlannedStartTime", Conversion::DateTime},
    {"pftm", "getPlannedFinishTime", Conversion::DateTime},
    {"estm", "getPlannedEarliestStartTime", Conversion::DateTime},
    {"lftm", "getPlannedLatestFinishTime", Conversion::DateTime},
    {"otim", "getOvertime", Conversion::YesNo},
    {"appo", "getAppointment", Conversion::YesNo},
    {"rsrp", "getRescheduleWithDetailSRP", Conversion::YesNo},
    {"tstm", "getActualTravelStartTime", Conversion::DateTime},
    {"astm", "getExecutionStartTime", Conversion::DateTime},
    {"aftm", "getExecutionFinishTime", Conversion::DateTime},
    {"csco", "getServiceContract"},
    {"csqu", "getServiceOrderQuotation"},
    {"stbp", "getShipToBusinessPartner"},
    {"emer", "getEmergencyOrder", Conversion::YesNo},
    {"minu", "getPageFrequency"},
    {"ract", "getDispatchTime", Conversion::DateTime},
};

const KeyCondition kSelectKey = {{" where orno='", "getServiceOrder", "'"}};
const KeyCondition kDeleteKey = {{" WHERE orno='", "getServiceOrder", "'"}};

const FullCopyPattern kFull = {
    .manager = kManager,
    .list = kList,
    .bounds = {"", "ZZZZZZZZZ"},
    .key = {"orno"},
    .failure = {"Copy Service Orders", " Copy of Service Orders from Orvan to Local DB failed"},
};

const ChangedCopyPattern kChanged = {
    .manager = kManager,
    .record = "ServiceOrders.ServiceOrders",
    .parameters = {{"orno", "", "ZZZZZZZZZ"}},
    .outputFields = {"ofbp", "ccfg", "cprj", "ordt", "osta", "cwoc", "csar", "emno", "blyn", "emer",
                     "ityn", "crit", "ordu", "tvdu", "pstm", "pftm", "estm", "lftm", "otim", "appo",
                     "rsrp", "ract", "tstm", "astm", "aftm", "csco", "csqu", "stbp", "lcad"},
    .selectKey = kSelectKey,
    .deleteKey = kDeleteKey,
    .failure = {"Copy Service Orders - Only Changed", " Copy of Service Orders from Orvan to Local DB failed"},
};

}  // namespace

ErpListing ServiceOrdersInErp() { return {"tssoc200", kManager, kChanged.record, kFull.list, kFull.bounds}; }

void clsDataCopy::CopyServiceOrders(const std::string& tableCode, const std::string& busComponent,
                                    std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopyServiceOrdersFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopyServiceOrdersChanged(tableCode, busComponent);
}

void clsDataCopy::CopyServiceOrdersFull(const std::string& tableCode, const std::string& busComponent) {
  CopyFull(kFull, tableCode, busComponent,
           [this](Recordset& row, const Object& record) { SetServiceOrderFields(row, record, true); });
}

void clsDataCopy::CopyServiceOrdersChanged(const std::string& tableCode, const std::string& busComponent) {
  CopyChanged(kChanged, tableCode, busComponent, [this](const Change& change) {
    const bool reread =
        change.isNew || change.row.Fields(kPartner).Value().ToText() != change.current.Call(kGetPartner).ToText();
    Object record;
    if (reread) {
      record = FirstRecord(List(change.manager, kList, {change.current.Call(kGetKey), change.current.Call(kGetKey)}));
    }
    SetServiceOrderFields(change.row, record ? record : change.current, bool(record));
  });
}

void clsDataCopy::SetServiceOrderFields(Recordset& row, const Object& record, bool withName) {
  SetFields(kFieldsBeforeName, row, record);
  if (withName) SetField(kName, row, record);
  SetFields(kFieldsAfterName, row, record);
}

}  // namespace qmx
