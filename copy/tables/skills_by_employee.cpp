// Skills by employee, tsmdm135.
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"

namespace qmx {
namespace {

constexpr const char* kManager = "SkillsByEmployee.SkillsByEmployeeManager";

const FieldMaps kFields = {
    {"emno", "getserviceemployee"},
    {"skll", "getSkill"},
    {"cogr", "getObjectGroup"},
    {"afct", "getSkillFactor"},
};

const KeyCondition kKey = {
    {" where emno='", "getserviceemployee", "'"},
    {" and   skll='", "getSkill", "'"},
    {" and   cogr='", "getObjectGroup", "'"},
};

const FullCopyPattern kFull = {
    .manager = kManager,
    .list = "List",
    .bounds = {"", "ZZZZZZZZZ", "", "ZZZZZZZZZ", "", "ZZZZZZZZZ"},
    .key = {"emno", "skll", "cogr"},
    .failure = {"Copy Service Skills by Employee", " Copy of Service Skilsl by Employee from Orvan to Local DB failed"},
};

const ChangedCopyPattern kChanged = {
    .manager = kManager,
    .record = "SkillsByEmployee.SkillsByEmployee",
    .parameters = {{"emno", "", "ZZZZZZ"}, {"skll", "", "ZZZZ"}, {"cogr", "", "ZZZZZZ"}},
    .outputFields = {"emno", "skll", "cogr", "afct"},
    .selectKey = kKey,
    .deleteKey = kKey,
    .failure = {"Copy Service Skills by Employee", " Copy of Service Skilsl by Employee from Orvan to Local DB failed"},
};

}  // namespace

ErpListing SkillsByEmployeeInErp() { return {"tsmdm135", kManager, kChanged.record, kFull.list, kFull.bounds}; }

void clsDataCopy::CopySkillsByEmployee(const std::string& tableCode, const std::string& busComponent,
                                       std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopySkillsByEmployeeFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopySkillsByEmployeeChanged(tableCode, busComponent);
}

void clsDataCopy::CopySkillsByEmployeeFull(const std::string& tableCode, const std::string& busComponent) {
  CopyFull(kFull, tableCode, busComponent, &clsDataCopy::SetSkillByEmployeeFields);
}

void clsDataCopy::CopySkillsByEmployeeChanged(const std::string& tableCode, const std::string& busComponent) {
  CopyChanged(kChanged, tableCode, busComponent, &clsDataCopy::SetSkillByEmployeeFields);
}

void clsDataCopy::SetSkillByEmployeeFields(Recordset& row, const Object& record) { SetFields(kFields, row, record); }

}  // namespace qmx
