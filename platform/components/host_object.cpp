#include "platform/components/host_object.h"

#include "platform/member_names.h"
#include "platform/running_call.h"

namespace qmx {
namespace {

struct HostObject : qmx_object {
  std::shared_ptr<Dispatch> target;
  std::uint32_t references = 1;
  Variant result;                // keeps a result's text until the next call
  std::vector<Variant> written;  // and the texts of by-reference arguments
};

HostObject& Self(qmx_object* object) { return *static_cast<HostObject*>(object); }

// Skips what the callee did not change. An object counts as changed when its pointer differs.
void WriteReference(const Variant& before, const Variant& after, qmx_value& variable) {
  if (before == after) return;
  const qmx_object* const passed = variable.kind == QMX_OBJECT ? variable.as.object : nullptr;
  GiveValue(after, variable);
  const bool sameObject = variable.kind == QMX_OBJECT && passed && variable.as.object == passed;
  if (sameObject) variable.as.object->type->release(variable.as.object);
}

Variant CallTarget(HostObject& self, const Member& member, std::span<qmx_value* const> given) {
  const auto isReference = [&](std::size_t i) { return (given[i]->flags & QMX_BY_REFERENCE) != 0; };
  std::vector<Variant> before;
  for (const qmx_value* const value : given) before.push_back(FromAbi(*value, Reference::Borrowed));
  std::vector<Variant> variables = before;
  std::vector<Argument> arguments;
  for (std::size_t i = 0; i < given.size(); ++i) {
    arguments.push_back(isReference(i) ? Ref(variables[i]) : Argument(before[i]));
  }

  Variant result = self.target->Invoke(member, arguments);

  self.written = std::move(variables);
  for (std::size_t i = 0; i < given.size(); ++i) {
    if (isReference(i)) WriteReference(before[i], self.written[i], *given[i]);
  }
  return result;
}

qmx_status ResolveMember(qmx_object*, const char* name, std::size_t length, std::int32_t* id, qmx_error* error) {
  try {
    *id = MemberNames::OfTheProgram().Id(std::string_view(name, length));
    return QMX_OK;
  } catch (...) {
    return FailWithCurrentError(error);
  }
}

qmx_status InvokeMember(qmx_object* object, std::int32_t id, qmx_value* const* arguments, std::size_t count,
                        qmx_value* result, qmx_error* error) {
  const OuterCallRestored outerCall;
  try {
    const Member* const member = MemberNames::OfTheProgram().Find(id);
    if (!member) {
      throw Error(errors::kNoSuchMember, "Components", "No member has the id " + std::to_string(id) + ".");
    }
    HostObject& self = Self(object);
    self.result = CallTarget(self, *member, {arguments, count});
    GiveValue(self.result, *result);
    return QMX_OK;
  } catch (...) {
    return FailWithCurrentError(error);
  }
}

void AddReference(qmx_object* object) { ++Self(object).references; }

void Release(qmx_object* object) {
  const OuterCallRestored outerCall;
  if (--Self(object).references == 0) delete &Self(object);
}

const qmx_type kHostType = {sizeof(qmx_type), 0,       ResolveMember,       InvokeMember,
                            AddReference,     Release, "object of the host"};

}  // namespace

qmx_object* ExportHostObject(std::shared_ptr<Dispatch> target) {
  auto* const object = new HostObject;
  object->struct_size = sizeof(qmx_object);
  object->reserved = 0;
  object->type = &kHostType;
  object->target = std::move(target);
  return object;
}

std::shared_ptr<Dispatch> HostObjectTarget(const qmx_object* object) {
  return object->type == &kHostType ? static_cast<const HostObject*>(object)->target : nullptr;
}

}  // namespace qmx
