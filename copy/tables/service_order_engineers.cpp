// Service order engineers, tssoc205.
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"

namespace qmx {
namespace {

constexpr const char* kManager = "ServiceOrderEngineers.ServiceOrderEngineersManager";

const FieldMaps kFields = {
    {"orno", "getServiceOrder"},
    {"Line", "getLineNumber"},
    {"emno", "getServiceEngineer"},
    {"acln", "getActivity"},
};

const KeyCondition kKey = {
    {" where orno='", "getServiceOrder", "'"},
    {" and   line= ", "getLineNumber", ""},
};

const FullCopyPattern kFull = {
    .manager = kManager,
    .list = "List",
    .bounds = {"", "ZZZZZZZZZ", std::int16_t{0}, std::int16_t{9999}},
    .key = {"orno", "Line"},
    .failure = {"Copy Service Order Engineers", " Copy of Service Order Engineers from Orvan to Local DB failed"},
};

const ChangedCopyPattern kChanged = {
    .manager = kManager,
    .record = "ServiceOrderEngineers.ServiceOrderEngineers",
    .parameters = {{"orno", "", "ZZZZZZZZZ"}, {"line", "0000", "9999"}},
    .outputFields = {"emno", "acln"},
    .selectKey = kKey,
    .deleteKey = kKey,
    .failure = {"Copy Service Order Engineers - Only Changed",
                " Copy of Service Order Engineers from Orvan to Local DB failed"},
};

}  // namespace

ErpListing ServiceOrderEngineersInErp() { return {"tssoc205", kManager, kChanged.record, kFull.list, kFull.bounds}; }

void clsDataCopy::CopyServiceOrderEngineers(const std::string& tableCode, const std::string& busComponent,
                                            std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopyServiceOrderEngineersFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopyServiceOrderEngineersChanged(tableCode, busComponent);
}

void clsDataCopy::CopyServiceOrderEngineersFull(const std::string& tableCode, const std::string& busComponent) {
  CopyFull(kFull, tableCode, busComponent, &clsDataCopy::SetServiceOrderEngineerFields);
}

void clsDataCopy::CopyServiceOrderEngineersChanged(const std::string& tableCode, const std::string& busComponent) {
  CopyChanged(kChanged, tableCode, busComponent, &clsDataCopy::SetServiceOrderEngineerFields);
}

void clsDataCopy::SetServiceOrderEngineerFields(Recordset& row, const Object& record) {
  SetFields(kFields, row, record);
}

}  // namespace qmx
