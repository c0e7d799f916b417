#include "fuzz/hostile_server.h"

#include <array>
#include <stdexcept>

#include "fuzz/require.h"

namespace qmx::fuzz {

struct HostileServer::Thing : qmx_object {
  HostileServer* server = nullptr;
  int references = 1;
  bool isUsable = true;
};

namespace {

constexpr int kMostDepth = 3;
constexpr std::size_t kUsableTypes = 2;
constexpr std::uint32_t kWithoutName = offsetof(qmx_type, name);

}  // namespace

// The first ones can be used.
const qmx_type HostileServer::kTypes[] = {
    {sizeof(qmx_type), 0, Resolve, Invoke, AddReference, Release, "hostile"},
    {kWithoutName, 0, Resolve, Invoke, AddReference, Release, "not to be read"},
    {sizeof(qmx_type), 0, Resolve, nullptr, AddReference, Release, nullptr},
    {8, 0, Resolve, Invoke, AddReference, Release, nullptr},
};

HostileServer::~HostileServer() {
  for (Thing* thing : unusable_) delete thing;
}

HostileServer& HostileServer::Of(qmx_object* object) {
  auto* const thing = static_cast<Thing*>(object);
  Require(thing->isUsable, "an object that cannot be used is called");
  Require(thing->references > 0, "an object that was released is called");
  return *thing->server;
}

bool HostileServer::IsUsable(qmx_object* object) {
  const bool isOwn = object->type >= std::begin(kTypes) && object->type < std::end(kTypes);
  return !isOwn || static_cast<Thing*>(object)->isUsable;
}

qmx_object* HostileServer::Make() {
  auto* const thing = new Thing;
  thing->server = this;
  thing->struct_size = sizeof(qmx_object);
  thing->reserved = 0;
  const std::size_t choice = input_.Below(12);
  thing->isUsable = choice > 2;
  thing->type = &kTypes[choice % kUsableTypes];
  if (choice < 2) thing->type = &kTypes[kUsableTypes + choice];
  if (choice == 2) thing->struct_size = 4;
  if (thing->isUsable) {
    ++alive_;
  } else {
    unusable_.push_back(thing);
  }
  return thing;
}

qmx_status HostileServer::Resolve(qmx_object* object, const char* name, std::size_t length, std::int32_t* id,
                                  qmx_error* error) {
  HostileServer& server = Of(object);
  if (server.input_.Chance(5)) return server.Fail(error);
  *id = static_cast<std::int32_t>(std::string_view(name, length).size());
  return QMX_OK;
}

qmx_status HostileServer::Invoke(qmx_object* object, std::int32_t, qmx_value* const* arguments, std::size_t count,
                                 qmx_value* result, qmx_error* error) {
  HostileServer& server = Of(object);
  ++server.depth_;
  AddReference(object);  // as for a lock, during the call
  const qmx_status status = server.Answer(object, arguments, count, result, error);
  Release(object);
  --server.depth_;
  if (status == QMX_OK + 3) throw std::runtime_error("a server may not throw");
  return status;
}

void HostileServer::AddReference(qmx_object* object) {
  Of(object);
  ++static_cast<Thing*>(object)->references;
}

void HostileServer::Release(qmx_object* object) {
  HostileServer& server = Of(object);
  if (--static_cast<Thing*>(object)->references > 0) return;
  --server.alive_;
  delete static_cast<Thing*>(object);
}

qmx_status HostileServer::Fail(qmx_error* error) {
  const std::string& text = NewText(12);
  error->number = input_.Next<std::int8_t>();
  if (input_.Chance(50)) error->description = text.data(), error->description_length = text.size();
  return QMX_FAILED;
}

qmx_status HostileServer::Answer(qmx_object* self, qmx_value* const* arguments, std::size_t count, qmx_value* result,
                                 qmx_error* error) {
  for (std::size_t i = 0; i < count; ++i) {
    qmx_object* const object = arguments[i]->kind == QMX_OBJECT ? arguments[i]->as.object : nullptr;
    if (!object || !IsUsable(object)) continue;
    if (input_.Chance(30)) Keep(object);
    if (input_.Chance(50)) CallBack(object);
  }
  switch (input_.Below(16)) {
    case 0:
    case 1:
      return Fail(error);
    case 2:
      return QMX_OK + 2;  // no status
    case 3:
      return QMX_OK + 3;  // Invoke throws
    default:
      break;
  }
  for (std::size_t i = 0; i < count; ++i) {
    const bool isReference = (arguments[i]->flags & QMX_BY_REFERENCE) != 0;
    if (isReference && input_.Chance(60)) Put(self, *arguments[i]);
  }
  Put(self, *result);
  return QMX_OK;
}

void HostileServer::Put(qmx_object* self, qmx_value& value) {
  const qmx_object* const before = value.kind == QMX_OBJECT ? value.as.object : nullptr;
  value.kind = static_cast<std::uint16_t>(input_.Below(12));
  if (value.kind == QMX_OBJECT || value.kind == QMX_EMPTY) {
    value.kind = QMX_OBJECT;
    value.as.object = nullptr;
    if (input_.Chance(60)) value.as.object = Make();
    if (!value.as.object && input_.Chance(50) && self != before) AddReference(value.as.object = self);
    return;
  }
  value.as.seconds = input_.Next<std::int16_t>();
  if (value.kind != QMX_TEXT) return;
  const std::string& text = NewText(8);
  value.as.text = {text.data(), text.size()};
}

void HostileServer::Keep(qmx_object* object) {
  object->type->add_ref(object);
  kept_.push_back(object);
}

// Keeps the rules of a caller, so that every reference has an owner.
void HostileServer::CallBack(qmx_object* object) {
  if (depth_ > kMostDepth) return;
  std::int32_t id = 0;
  qmx_error error{};
  error.struct_size = sizeof error;
  if (object->type->resolve(object, "Back", 4, &id, &error) != QMX_OK) return;
  if (input_.Chance(10)) id = input_.Next<std::int32_t>();
  qmx_value variable{};
  variable.struct_size = sizeof variable;
  variable.flags = input_.Chance(50) ? QMX_BY_REFERENCE : 0;
  variable.kind = static_cast<std::uint16_t>(input_.Below(QMX_TEXT));
  variable.as.seconds = input_.Next<std::int8_t>();
  qmx_object* const lent = input_.Chance(30) ? Make() : nullptr;
  if (lent) variable.kind = QMX_OBJECT, variable.as.object = lent;
  qmx_value result{};
  result.struct_size = sizeof result;
  qmx_value* const arguments[] = {&variable};
  qmx_status status = QMX_FAILED;
  try {
    status = object->type->invoke(object, id, arguments, 1, &result, &error);
  } catch (const std::exception&) {  // of one of this server's own objects
  }
  if (status == QMX_OK) {
    const auto release = [](const qmx_value& value) {
      const bool isObject = value.kind == QMX_OBJECT && value.as.object;
      if (isObject && IsUsable(value.as.object)) value.as.object->type->release(value.as.object);
    };
    release(result);
    const bool isWritten = variable.kind == QMX_OBJECT && variable.as.object != lent;
    if (isWritten) release(variable);
  }
  if (lent && IsUsable(lent)) Release(lent);
}

void HostileServer::ReleaseWhatItKeeps() {
  std::vector<qmx_object*> kept;
  kept.swap(kept_);
  for (qmx_object* object : kept) object->type->release(object);
}

}  // namespace qmx::fuzz
