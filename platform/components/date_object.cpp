#include "platform/components/date_object.h"

#include "platform/clock.h"
#include "platform/components.h"
#include "platform/components/lenient_date.h"
#include "platform/error.h"
#include "platform/names.h"

namespace qmx {
namespace {

struct Accessor {
  std::string_view name;
  LenientDate::Field field;
  bool sets;
};

using Field = LenientDate::Field;
constexpr Accessor kAccessors[] = {
    {"getYear", Field::Year, false},     {"setYear", Field::Year, true},       {"getMonth", Field::Month, false},
    {"setMonth", Field::Month, true},    {"getDate", Field::Day, false},       {"setDate", Field::Day, true},
    {"getHours", Field::Hour, false},    {"setHours", Field::Hour, true},      {"getMinutes", Field::Minute, false},
    {"setMinutes", Field::Minute, true}, {"getSeconds", Field::Second, false}, {"setSeconds", Field::Second, true},
};

const Accessor& Find(const Member& member) {
  Member::Site& site = member.LastFound();
  if (site.type == &kAccessors) return kAccessors[site.id];
  for (const Accessor& accessor : kAccessors) {
    if (!SameName(accessor.name, member.Name())) continue;
    site = {&kAccessors, static_cast<std::int32_t>(&accessor - kAccessors)};
    return accessor;
  }
  throw Error(errors::kNoSuchMember, "Date", "A date object has no member \"" + std::string(member.Name()) + "\".");
}

class DateObject final : public Dispatch {
 public:
  explicit DateObject(DateTime moment) : date_(moment) {}

  Variant Invoke(const Member& member, std::span<const Argument> arguments) override {
    try {
      const Accessor& accessor = Find(member);
      const std::size_t wanted = accessor.sets ? 1 : 0;
      if (arguments.size() != wanted) {
        throw Error(errors::kWrongArgumentCount, "Date",
                    std::string(accessor.name) + " takes " + std::to_string(wanted) +
                        (accessor.sets ? " argument, not " : " arguments, not ") + std::to_string(arguments.size()) +
                        ".");
      }
      if (!accessor.sets) return date_.Get(accessor.field);
      date_.Set(accessor.field, arguments[0].Value().ToInt32());
      return {};
    } catch (Error& error) {
      error.With("member", std::string(member.Name())).With("progid", std::string(kDateProgId));
      throw;
    }
  }

 private:
  LenientDate date_;
};

}  // namespace

Object MakeDateObject(Clock& clock) { return Object(std::make_shared<DateObject>(clock.Now())); }

}  // namespace qmx
