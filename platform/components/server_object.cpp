#include "platform/components/server_object.h"

#include "platform/described_call.h"
#include "platform/interruptible_call.h"
#include "platform/interruption.h"
#include "platform/running_call.h"

namespace qmx {
namespace {

const char* Flaw(const qmx_object* object) {
  if (object->struct_size < sizeof(qmx_object)) return "its struct_size is too small";
  const qmx_type* const type = object->type;
  if (!type) return "it has no type";
  if (!QMX_HAS(type, release)) return "its type's struct_size is too small";
  if (!type->resolve || !type->invoke || !type->add_ref || !type->release) return "its type lacks a function";
  return nullptr;
}

}  // namespace

ServerObject::ServerObject(qmx_object* object, std::string_view progId) : ServerObject(object) {
  progId_ = fromProgId_ = RunningCall::KeepText(progId);
}

ServerObject::ServerObject(qmx_object* object) : object_(object), progId_(nullptr), fromProgId_(RunningCall::ProgId()) {
  if (const char* const flaw = Flaw(object)) {
    throw Error(errors::kInternal, "Components", std::string("A component server gave an unusable object: ") + flaw);
  }
}

ServerObject::~ServerObject() {
  const OuterCallRestored outerCall;  // objects are also released while arguments are written back
  const RunningCall running(fromProgId_, "release");
  object_->type->release(object_);
}

inline void ServerObject::Call(std::int32_t id, qmx_value* const* arguments, std::size_t count, qmx_value& result) {
  result.struct_size = sizeof result;
  result.kind = QMX_EMPTY;
  result.flags = 0;
  qmx_error error = EmptyAbiError();
  const qmx_status status = object_->type->invoke(object_, id, arguments, count, &result, &error);
  if (status != QMX_OK) Raise(status, error);
}

Variant ServerObject::Invoke(const Member& member, std::span<const Argument> arguments) {
  const Member::Site& site = member.LastFound();
  if (site.type != object_->type || !arguments.empty() || Interruption::IsRequested())
    return InvokeOther(member, arguments);
  return Described(*this, member, [&] {
    const RunningCall running(fromProgId_, site.name);
    qmx_value result;
    Call(site.id, nullptr, 0, result);
    return FromAbi(result, Reference::Given);
  });
}

Variant ServerObject::InvokeOther(const Member& member, std::span<const Argument> arguments) {
  return Described(*this, member, [&] {
    if (MayBeInterrupted(fromProgId_, member.Name())) Interruption::RaiseIfRequested();
    Member::Site& site = member.LastFound();
    if (site.type != object_->type) site = Find(member);
    AbiArguments list(arguments);
    const RunningCall running(fromProgId_, site.name);
    qmx_value result;
    Call(site.id, list.Pointers(), arguments.size(), result);
    return list.Take(result);
  });
}

Member::Site ServerObject::Find(const Member& member) {
  const char* const name = RunningCall::KeepText(member.Name());
  const RunningCall running(fromProgId_, name);
  std::int32_t id = 0;
  qmx_error error = EmptyAbiError();
  const qmx_status status = object_->type->resolve(object_, member.Name().data(), member.Name().size(), &id, &error);
  if (status != QMX_OK) Raise(status, error);
  return {object_->type, id, name};
}

void ServerObject::Raise(qmx_status status, const qmx_error& error) const {
  if (status == QMX_FAILED) throw FromAbi(error, Name());
  throw Error(errors::kInternal, Name(),
              "The component returned status " + std::to_string(status) + ", which is neither QMX_OK nor QMX_FAILED.");
}

std::string ServerObject::Name() const {
  if (progId_) return progId_;
  const qmx_type* const type = object_->type;
  return QMX_HAS(type, name) && type->name ? type->name : "Components";
}

void ServerObject::Describe(Error& error, const Member& member) const {
  error.With("member", std::string(member.Name()));
  if (progId_) error.With("progid", progId_);
  const qmx_type* const type = object_->type;
  if (QMX_HAS(type, name) && type->name) error.With("type", type->name);
}

}  // namespace qmx
