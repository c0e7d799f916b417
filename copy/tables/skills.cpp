// Skills, tsmdm130.
#include "copy/clsDataCopy.h"
#include "copy/erp_listings.h"

namespace qmx {
namespace {

constexpr const char* kManager = "Skills.SkillsManager";

const FieldMaps kFields = {
    {"skll", "getSkill"},
    {"dsca", "getdescription"},
    {"clrt", "getLaborRate"},
};

const KeyCondition kKey = {{" where skll='", "getSkill", "'"}};

const FullCopyPattern kFull = {
    .manager = kManager,
    .list = "List",
    .bounds = {"", "ZZZZZZZZZ"},
    .key = {"skll"},
    .failure = {"Copy Service Skills", " Copy of Service Skills from Orvan to Local DB failed"},
};

const ChangedCopyPattern kChanged = {
    .manager = kManager,
    .record = "Skills.Skills",
    .parameters = {{"skll", "", "ZZZZ"}},
    .outputFields = {"skll", "desc", "clrt"},
    .selectKey = kKey,
    .deleteKey = kKey,
    .failure = {"Copy Service Skills", " Copy of Service Skills from Orvan to Local DB failed"},
};

}  // namespace

ErpListing SkillsInErp() { return {"tsmdm130", kManager, kChanged.record, kFull.list, kFull.bounds}; }

void clsDataCopy::CopySkills(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod) {
  if (syncMethod == kFullCopy) CopySkillsFull(tableCode, busComponent);
  if (syncMethod == kOnlyChanged) CopySkillsChanged(tableCode, busComponent);
}

void clsDataCopy::CopySkillsFull(const std::string& tableCode, const std::string& busComponent) {
  CopyFull(kFull, tableCode, busComponent, &clsDataCopy::SetSkillFields);
}

void clsDataCopy::CopySkillsChanged(const std::string& tableCode, const std::string& busComponent) {
  CopyChanged(kChanged, tableCode, busComponent, &clsDataCopy::SetSkillFields);
}

void clsDataCopy::SetSkillFields(Recordset& row, const Object& record) { SetFields(kFields, row, record); }

}  // namespace qmx
