// Service areas, tsmdm105.
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"

namespace qmx {
namespace {

constexpr const char* kManager = "ServiceAreas.ServiceAreasManager";

const FieldMaps kFields = {
    {"csar", "getServiceArea"},
    {"dsca", "getServiceAreaDescription"},
    {"artp", "getServiceAreaType"},
    {"cmsa", "getMainServiceArea"},
    {"cwoc", "getServiceCenter"},
    {"cwar", "getWarehouse"},
    {"trti", "getAverageTravelingTime"},
    {"dist", "getAverageTravelingDistance"},
    {"ccha", "getCallOutCharge"},
    {"CCur", "getCurrency"},
    {"clrt", "getLaborRate"},
};

const KeyCondition kKey = {{" where csar='", "getServiceArea", "'"}};

const FullCopyPattern kFull = {
    .manager = kManager,
    .list = "List",
    .bounds = {"", "ZZZZZZZ"},
    .key = {"csar"},
    .failure = {"Copy Service Areas", " Copy of Service Areas from Orvan to Local DB failed"},
};

const ChangedCopyPattern kChanged = {
    .manager = kManager,
    .record = "ServiceAreas.ServiceAreas",
    .parameters = {{"csar", "", "ZZZZZZZZZ"}},
    .outputFields = {"csar", "desc", "artp", "cmsa", "cwoc", "cwar", "trti", "dist", "ccha", "ccur", "clrt"},
    .selectKey = kKey,
    .deleteKey = kKey,
    .failure = {"Copy Service Areas", " Copy of Service Areas from Orvan to Local DB failed"},
};

}  // namespace

ErpListing ServiceAreasInErp() { return {"tsmdm105", kManager, kChanged.record, kFull.list, kFull.bounds}; }

void clsDataCopy::CopyServiceAreas(const std::string& tableCode, const std::string& busComponent,
                                   std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopyServiceAreasFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopyServiceAreasChanged(tableCode, busComponent);
}

void clsDataCopy::CopyServiceAreasFull(const std::string& tableCode, const std::string& busComponent) {
  CopyFull(kFull, tableCode, busComponent, &clsDataCopy::SetServiceAreaFields);
}

void clsDataCopy::CopyServiceAreasChanged(const std::string& tableCode, const std::string& busComponent) {
  CopyChanged(kChanged, tableCode, busComponent, &clsDataCopy::SetServiceAreaFields);
}

void clsDataCopy::SetServiceAreaFields(Recordset& row, const Object& record) { SetFields(kFields, row, record); }

}  // namespace qmx
