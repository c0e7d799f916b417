// A component server that passes every call on to another one, and makes some calls fail. It is not built with the
// sanitizers, because the program beneath which it fails is not.
//
// QMX_FAULTY_COMPONENT says which, as "FIRST COUNT LIBRARY": the first call that fails, counted from 1 (0 for none),
// how many in a row (0 for all that follow), and the other server's library. Creations of objects are calls, too.
// Calls are counted as shared_count.h does.
#include <dlfcn.h>
#include <qmx/component_server.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/shared_count.h"

namespace {

SharedCount* count = nullptr;
long first = 0;
long length = 0;
const qmx_component_server* real = nullptr;

constexpr const char* kSource = "Faulty component";
constexpr const char* kText = "This call was made to fail.";

qmx_status Fail(qmx_error* error, const char* text) {
  error->number = QMX_E_INTERNAL;
  error->source = kSource;
  error->source_length = std::strlen(kSource);
  error->description = text;
  error->description_length = std::strlen(text);
  return QMX_FAILED;
}

bool IsStruck() { return IsStruckCall(count, first, length); }

// In place of an object of the real server.
struct Passing : qmx_object {
  qmx_object* inner;
  long references = 1;
};

// One for each type of the real server, because numbers of members belong to the type.
struct PassingType : qmx_type {
  const qmx_type* inner;
};

void AddReference(qmx_object* object) { ++static_cast<Passing*>(object)->references; }

void Release(qmx_object* object) {
  auto* const passing = static_cast<Passing*>(object);
  if (--passing->references > 0) return;
  passing->inner->type->release(passing->inner);
  delete passing;
}

qmx_status Resolve(qmx_object* object, const char* name, size_t size, int32_t* id, qmx_error* error) {
  qmx_object* const inner = static_cast<Passing*>(object)->inner;
  return inner->type->resolve(inner, name, size, id, error);
}

qmx_object* Wrapped(qmx_object* inner);

qmx_status Invoke(qmx_object* object, int32_t id, qmx_value* const* arguments, size_t size, qmx_value* result,
                  qmx_error* error) {
  if (IsStruck()) return Fail(error, kText);
  qmx_object* const inner = static_cast<Passing*>(object)->inner;
  std::vector<qmx_value> values(size);
  std::vector<qmx_value*> pointers(size);
  for (size_t i = 0; i < size; ++i) {
    values[i] = *arguments[i];
    pointers[i] = &values[i];
    if (values[i].kind != QMX_OBJECT || !values[i].as.object) continue;
    if (values[i].as.object->type->invoke == Invoke)
      values[i].as.object = static_cast<Passing*>(values[i].as.object)->inner;
  }
  const qmx_status status = inner->type->invoke(inner, id, pointers.data(), size, result, error);
  if (status == QMX_OK && result->kind == QMX_OBJECT) result->as.object = Wrapped(result->as.object);
  return status;
}

const PassingType* PassingTypeOf(const qmx_type* inner) {
  static std::map<const qmx_type*, std::unique_ptr<PassingType>> types;
  std::unique_ptr<PassingType>& type = types[inner];
  if (!type) {
    type = std::make_unique<PassingType>();
    static_cast<qmx_type&>(*type) = {sizeof(qmx_type), 0, Resolve, Invoke, AddReference, Release, inner->name};
    type->inner = inner;
  }
  return type.get();
}

qmx_object* Wrapped(qmx_object* inner) {
  if (!inner) return nullptr;
  auto* const passing = new Passing{};
  passing->struct_size = sizeof(qmx_object);
  passing->type = PassingTypeOf(inner->type);
  passing->inner = inner;
  return passing;
}

qmx_status Create(const char* progId, size_t size, qmx_object** object, qmx_error* error) {
  if (IsStruck()) return Fail(error, kText);
  qmx_object* inner = nullptr;
  const qmx_status status = real->create(progId, size, &inner, error);
  if (status == QMX_OK) *object = Wrapped(inner);
  return status;
}

const qmx_component_server kServer = {
    sizeof(qmx_component_server), QMX_ABI_VERSION, Create, "faulty 1", nullptr, nullptr, nullptr};

}  // namespace

const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host* host, qmx_error* error) {
  const char* const plan = std::getenv("QMX_FAULTY_COMPONENT");
  std::istringstream words(plan ? plan : "");
  std::string library;
  words >> first >> length >> library;
  count = ShareCount();
  void* const opened = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* const entry = opened ? dlsym(opened, QMX_COMPONENT_SERVER_ENTRY_NAME) : nullptr;
  if (entry) real = reinterpret_cast<qmx_component_server_entry_function>(entry)(host, error);
  if (!real) Fail(error, "The other server cannot be loaded.");
  return real ? &kServer : nullptr;
}
