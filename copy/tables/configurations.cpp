// Service configurations, tscfg220.
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"

namespace qmx {
namespace {

constexpr const char* kManager = "Configurations.ConfigurationsManager";

const FieldMaps kFields = {
    {"ccfg", "getConfiguration"},      {"dsca", "getdescription"},        {"ofbp", "getSoldToBusinessPartner"},
    {"cwoc", "getServiceCenter"},      {"csar", "getServiceArea"},        {"tecr", "getResponsibleEngineer"},
    {"teca", "getPreferredEngineer1"}, {"tecb", "getPreferredEngineer2"}, {"cusc", "getUsageClass"},
    {"czon", "getDistanceZone"},       {"dist", "getTravelDistance"},     {"trti", "getTravelingTime"},
    {"ccal", "getCalendar"},           {"cadr", "getLocationAddress"},
};

const KeyCondition kSelectKey = {{" where ccfg='", "getConfiguration", "'"}};
const KeyCondition kDeleteKey = {{" WHERE ccfg = '", "getConfiguration", "'"}};

const FullCopyPattern kFull = {
    .manager = kManager,
    .list = "List",
    .bounds = {"", "ZZZZZZZZZ", "", "ZZZZZZZZZ", "", "ZZZZZZZZZ", "", "ZZZZZZZZZ"},
    .key = {"ccfg"},
    .failure = {"Copy Service Configurations", " Copy of Service Configurations from Orvan to Local DB failed"},
};

const ChangedCopyPattern kChanged = {
    .manager = kManager,
    .record = "Configurations.Configurations",
    .parameters = {{"ccfg", "", "ZZZZZZZZ"}},
    .outputFields = {"desc", "ofbp", "cwoc", "csar", "teca", "tecb", "cusc", "czon", "dist", "trti", "ccal", "cadr"},
    .selectKey = kSelectKey,
    .deleteKey = kDeleteKey,
    .failure = {"Copy Service Configurations - Only Change",
                " Copy of Service Configurations from Orvan to Local DB failed"},
};

}  // namespace

ErpListing ConfigurationsInErp() { return {"tscfg220", kManager, kChanged.record, kFull.list, kFull.bounds}; }

void clsDataCopy::CopyConfigurations(const std::string& tableCode, const std::string& busComponent,
                                     std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopyConfigurationsFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopyConfigurationsChanged(tableCode, busComponent);
}

void clsDataCopy::CopyConfigurationsFull(const std::string& tableCode, const std::string& busComponent) {
  CopyFull(kFull, tableCode, busComponent, &clsDataCopy::SetConfigurationFields);
}

void clsDataCopy::CopyConfigurationsChanged(const std::string& tableCode, const std::string& busComponent) {
  CopyChanged(kChanged, tableCode, busComponent, &clsDataCopy::SetConfigurationFields);
}

void clsDataCopy::SetConfigurationFields(Recordset& row, const Object& record) { SetFields(kFields, row, record); }

}  // namespace qmx
