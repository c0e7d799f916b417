#include "tests/component_faults/served_erp.h"

#include <map>
#include <memory>
#include <span>
#include <vector>

#include "platform/components/abi_values.h"
#include "platform/member_names.h"
#include "tests/support/scripted_components.h"

namespace qmx::test {
namespace {

struct ServedObject : qmx_object {
  ServedErp* erp;
  Object target;
  int references = 1;
  Variant result;                  // keeps a result's text until the next call
  std::vector<Variant> variables;  // and those of by-reference arguments
};

ServedObject& Self(qmx_object* object) { return *static_cast<ServedObject*>(object); }

qmx_object* Serve(ServedErp& erp, const Object& target);

qmx_status Resolve(qmx_object*, const char* name, std::size_t length, std::int32_t* id, qmx_error*) {
  *id = MemberNames::OfTheProgram().Id(std::string_view(name, length));
  return QMX_OK;
}

qmx_status Invoke(qmx_object* object, std::int32_t id, qmx_value* const* arguments, std::size_t count,
                  qmx_value* result, qmx_error* error);

Variant Received(const qmx_value& value) {
  const bool isOwn = value.kind == QMX_OBJECT && value.as.object && value.as.object->type->invoke == Invoke;
  return isOwn ? Variant(Self(value.as.object).target) : FromAbi(value, Reference::Borrowed);
}

void Give(ServedErp& erp, const Variant& value, qmx_value& out) {
  const Object* const object = value.IfObject();
  if (!object || !*object) return GiveValue(value, out);
  out.kind = QMX_OBJECT;
  out.as.object = Serve(erp, *object);
}

Variant CallTarget(ServedObject& self, const Member& member, std::span<qmx_value* const> given) {
  std::vector<Variant> before;
  for (const qmx_value* const value : given) before.push_back(Received(*value));
  std::vector<Variant> variables = before;
  std::vector<Argument> arguments;
  for (std::size_t i = 0; i < given.size(); ++i) {
    arguments.push_back(given[i]->flags & QMX_BY_REFERENCE ? Ref(variables[i]) : Argument(before[i]));
  }
  Variant result = self.target.Target()->Invoke(member, arguments);
  self.variables = std::move(variables);
  for (std::size_t i = 0; i < given.size(); ++i) {
    if (self.variables[i] != before[i]) Give(*self.erp, self.variables[i], *given[i]);
  }
  return result;
}

qmx_status Invoke(qmx_object* object, std::int32_t id, qmx_value* const* arguments, std::size_t count,
                  qmx_value* result, qmx_error* error) {
  try {
    ServedObject& self = Self(object);
    const Member& member = *MemberNames::OfTheProgram().Find(id);
    const std::string call = ServedErp::KindOf(*object) + '.' + std::string(member.Name());
    const bool goesWrong = self.erp->calls.IsStruck(call);
    self.result = goesWrong ? self.erp->wrongAnswer() : CallTarget(self, member, {arguments, count});
    Give(*self.erp, self.result, *result);
    return QMX_OK;
  } catch (...) {
    return FailWithCurrentError(error);
  }
}

void AddReference(qmx_object* object) { ++Self(object).references; }

void Release(qmx_object* object) {
  if (--Self(object).references == 0) delete &Self(object);
}

// "listed" of the scripted object "listed2".
std::string Kind(const Object& target) {
  const auto* const scripted = dynamic_cast<const ScriptedObject*>(target.Target().get());
  return scripted ? scripted->Name().substr(0, scripted->Name().find_first_of("0123456789")) : "object";
}

const qmx_type& TypeOf(const std::string& kind) {
  static std::map<std::string, qmx_type> types;
  const auto [place, isNew] = types.try_emplace(kind);
  if (isNew) {
    place->second = {sizeof(qmx_type), 0, Resolve, Invoke, AddReference, Release, place->first.c_str()};
  }
  return place->second;
}

qmx_object* Serve(ServedErp& erp, const Object& target) {
  auto* const made = new ServedObject{};
  made->struct_size = sizeof(qmx_object);
  made->type = &TypeOf(Kind(target));
  made->erp = &erp;
  made->target = target;
  return made;
}

}  // namespace

qmx_object* ServedErp::Create(std::string_view progId) { return Serve(*this, erp_.CreateObject(progId)); }

std::string ServedErp::KindOf(const qmx_object& object) {
  return object.type->invoke == Invoke ? object.type->name : "";
}

}  // namespace qmx::test
