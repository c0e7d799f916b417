#include "binding/object.h"

#include <new>

#include "binding/guard.h"
#include "binding/names.h"

namespace orvan {
namespace {

// The exception in flight.
Failure Caught() {
  try {
    throw;
  } catch (const Failure& failure) {
    return failure;
  } catch (const std::bad_alloc&) {
    return {kOutOfMemory, "Sandbox", "There is not enough memory."};
  } catch (const std::exception& other) {
    return {QMX_E_INTERNAL, "Sandbox", other.what()};
  } catch (...) {
    return {QMX_E_INTERNAL, "Sandbox", "Something unknown was thrown."};
  }
}

void Fill(qmx_error& error, std::int32_t number, std::string_view source, std::string_view description) {
  error.number = number;
  error.source = source.data();
  error.source_length = source.size();
  error.description = description.data();
  error.description_length = description.size();
}

qmx_status Resolve(qmx_object* object, const char* name, std::size_t length, std::int32_t* id, qmx_error* error) {
  return Guarded(error, [&] {
    const Type& type = static_cast<Object*>(object)->ObjectType();
    const std::string_view member(name, length);
    *id = type.Find(member);
    if (*id < 0)
      throw Failure(QMX_E_NO_SUCH_MEMBER, type.Name(),
                    type.Name() + " has no member \"" + std::string(member) + "\". Check the spelling.");
  });
}

qmx_status Invoke(qmx_object* object, std::int32_t id, qmx_value* const* arguments, std::size_t count,
                  qmx_value* result, qmx_error* error) {
  return Guarded(error,
                 [&] { static_cast<Object*>(object)->Invoke(id, Arguments(arguments, count), Result(*result)); });
}

void AddReference(qmx_object* object) { static_cast<Object*>(object)->AddReference(); }
void Release(qmx_object* object) { static_cast<Object*>(object)->Release(); }

}  // namespace

qmx_status Report(qmx_error* error) noexcept {
  static Failure last(0, "", "");
  try {
    last = Caught();
    Fill(*error, last.Number(), last.Source(), last.Description());
  } catch (...) {  // there is not even memory for the texts
    Fill(*error, kOutOfMemory, "Sandbox", "There is not enough memory.");
  }
  return QMX_FAILED;
}

Type::Type(std::string name, std::vector<std::string> members)
    : qmx_type{sizeof(qmx_type), 0, Resolve, orvan::Invoke, orvan::AddReference, orvan::Release, nullptr},
      name_(std::move(name)),
      members_(std::move(members)) {
  qmx_type::name = name_.c_str();
}

std::int32_t Type::Find(std::string_view member) const {
  for (std::size_t i = 0; i < members_.size(); ++i)
    if (SameName(members_[i], member)) return static_cast<std::int32_t>(i);
  return -1;
}

void WrongArgumentCount(const Object& object, std::string_view member, std::size_t wanted, std::size_t given) {
  const std::string& name = object.ObjectType().Name();
  throw Failure(QMX_E_WRONG_ARGUMENT_COUNT, name,
                std::string(member) + " of " + name + " takes " + std::to_string(wanted) +
                    (wanted == 1 ? " argument, not " : " arguments, not ") + std::to_string(given) + ".");
}

ForeignObject::ForeignObject(qmx_object* object) {
  if (!object) return;
  object->type->add_ref(object);
  object_ = {object, Releaser()};
}

std::int32_t ForeignObject::CallForInteger(std::string_view member) const {
  qmx_error error{};
  error.struct_size = sizeof error;
  const auto check = [&](qmx_status status) {
    if (status == QMX_OK) return;
    throw Failure(error.number, std::string(error.source, error.source_length),
                  std::string(error.description, error.description_length));
  };
  qmx_object* object = object_.get();
  std::int32_t id = 0;
  check(object->type->resolve(object, member.data(), member.size(), &id, &error));
  qmx_value result{};
  result.struct_size = sizeof result;
  check(object->type->invoke(object, id, nullptr, 0, &result, &error));
  const Argument answer(result);
  if (answer.ObjectOrNothing()) result.as.object->type->release(result.as.object);
  return static_cast<std::int32_t>(answer.Number());
}

}  // namespace orvan
