// The steps that full and changed copies share: reading the clock, failing, listing records, filling a row from a
// record, counting.
#include <limits>

#include "copy/clsDataCopy.h"
#include "platform/clock.h"
#include "platform/error.h"

namespace qmx {
namespace {

// The ERP's codes for yes and no.
constexpr std::int16_t kYes = 1;
constexpr std::int16_t kNo = 2;

// A component may answer with a boolean, whose true would be -1 as a number.
std::int16_t YesNoCode(const Variant& value) {
  if (value.GetKind() == Variant::Kind::Boolean) return value.ToBoolean() ? kYes : kNo;
  return value.ToInt16();
}

const Member kHasMoreElements = "hasMoreElements";
const Member kNextElement = "nextElement";

}  // namespace

DateTime clsDataCopy::Now() { return platform_.clock.Now(); }

void clsDataCopy::FailPlus100(const FailureTexts& failure) {
  throw Error(NumberPlus100(CurrentError().Number()), failure.source, failure.description);
}

Object clsDataCopy::List(const Object& manager, const Member& list, const std::vector<Variant>& bounds,
                         const std::string& table) {
  try {
    const std::vector<Argument> arguments(bounds.begin(), bounds.end());
    return ObjectGivenBy(manager, list, Invoke(manager, list, arguments));
  } catch (Error& error) {
    if (!table.empty()) error.With("table", table);
    throw;
  }
}

Object clsDataCopy::RequiredObject(const Object& callee, const Member& member, Variant result) {
  Object object = ObjectGivenBy(callee, member, std::move(result));
  if (object) return object;
  Error missing(errors::kObjectNotSet, "clsDataCopy",
                "Object variable not set: " + std::string(member.Name()) + " gave no object.");
  callee.Target()->Describe(missing, member);
  throw missing;
}

Object clsDataCopy::FirstRecord(const Object& enumeration) {
  if (!enumeration || !BooleanGivenBy(enumeration, kHasMoreElements, enumeration.Call(kHasMoreElements))) return {};
  return RequiredObject(enumeration, kNextElement, enumeration.Call(kNextElement));
}

Mapper clsDataCopy::MapperOf(FieldSetter setFields) {
  return [=, this](Recordset& row, const Object& record) { (this->*setFields)(row, record); };
}

ChangeMapper clsDataCopy::ChangeMapperOf(FieldSetter setFields) {
  return [=, this](const Change& change) { (this->*setFields)(change.row, change.current); };
}

void clsDataCopy::SetFields(const FieldMaps& fields, Recordset& row, const Object& record) {
  for (const FieldMap& field : fields) SetField(field, row, record);
}

void clsDataCopy::SetField(const FieldMap& field, Recordset& row, const Object& record) {
  try {
    Variant value = record.Call(field.getter);
    switch (field.conversion) {
      case Conversion::AsReturned:
        break;
      case Conversion::TwoDecimals:
        value = RoundDecimals(value.ToDouble(), 2);
        break;
      case Conversion::YesNo:
        value = YesNoToFlag(YesNoCode(value));
        break;
      case Conversion::DateTime:
        if (DateObjectToDate(std::move(value).ToObject())) {
          value = ConvertedDate;
        } else {
          value = Variant::Null();
        }
        break;
    }
    row.Fields(field.column).Value(std::move(value));
  } catch (Error& error) {
    error.With("column", std::string(field.column.Name())).With("member", std::string(field.getter.Name()));
    throw;
  }
}

void clsDataCopy::Increment(std::int32_t& count) {
  if (count == std::numeric_limits<std::int32_t>::max()) {
    throw Error(errors::kOverflow, "clsDataCopy", "Overflow: more than 2147483647 rows were counted.");
  }
  ++count;
}

}  // namespace qmx
