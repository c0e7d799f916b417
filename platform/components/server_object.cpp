#include "platform/components/server_object.h"

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

ServerObject::ServerObject(qmx_object* object, std::string progId) : ServerObject(object) {
  progId_ = std::move(progId);
}

ServerObject::ServerObject(qmx_object* object) : object_(object) {
  if (const char* const flaw = Flaw(object)) {
    throw Error(errors::kInternal, "Components", std::string("A component server gave an unusable object: ") + flaw);
  }
}

ServerObject::~ServerObject() { object_->type->release(object_); }

Variant ServerObject::Invoke(const Member& member, std::span<const Argument> arguments) {
  try {
    const qmx_type* const type = object_->type;
    Member::Site& site = member.LastFound();
    if (site.type != type) [[unlikely]]
      site = {type, Resolve(member)};
    qmx_value result;
    result.struct_size = sizeof result;
    result.kind = QMX_EMPTY;
    result.flags = 0;
    qmx_error error = EmptyAbiError();
    if (arguments.empty()) {
      Require(type->invoke(object_, site.id, nullptr, 0, &result, &error), error);
    } else {
      Call(site.id, arguments, result, error);
    }
    return FromAbi(result, Reference::Given);
  } catch (Error& error) {
    Describe(error, member);
    throw;
  } catch (...) {
    Error error = CurrentError();  // the server let an exception out, or our memory ran out
    Describe(error, member);
    throw error;
  }
}

std::int32_t ServerObject::Resolve(const Member& member) {
  std::int32_t id = 0;
  qmx_error error = EmptyAbiError();
  Require(object_->type->resolve(object_, member.Name().data(), member.Name().size(), &id, &error), error);
  return id;
}

void ServerObject::Call(std::int32_t id, std::span<const Argument> arguments, qmx_value& result, qmx_error& error) {
  AbiArguments list(arguments);
  Require(object_->type->invoke(object_, id, list.Pointers(), arguments.size(), &result, &error), error);
  list.WriteBack();
}

void ServerObject::Raise(qmx_status status, const qmx_error& error) const {
  if (status == QMX_FAILED) throw FromAbi(error, Name());
  throw Error(errors::kInternal, Name(),
              "The component returned status " + std::to_string(status) + ", which is neither QMX_OK nor QMX_FAILED.");
}

std::string ServerObject::Name() const {
  if (!progId_.empty()) return progId_;
  const qmx_type* const type = object_->type;
  return QMX_HAS(type, name) && type->name ? type->name : "Components";
}

void ServerObject::Describe(Error& error, const Member& member) const {
  error.With("member", std::string(member.Name()));
  if (!progId_.empty()) error.With("progid", progId_);
  const qmx_type* const type = object_->type;
  if (QMX_HAS(type, name) && type->name) error.With("type", type->name);
}

}  // namespace qmx
