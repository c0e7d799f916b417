// A server whose object "Test.Probe" handles values, objects and errors as tests need. Members whose names say so break
// the contract.
#include <qmx/component_server.h>

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

const qmx_component_host* host = nullptr;
std::int32_t resolutions = 0;
std::int32_t living = 0;

struct Failure {
  std::int32_t number;
  std::string source;
  std::string description;
};
Failure last;

qmx_status Fail(qmx_error* error, Failure failure) {
  last = std::move(failure);
  error->number = last.number;
  error->source = last.source.data();
  error->source_length = last.source.size();
  error->description = last.description.data();
  error->description_length = last.description.size();
  return QMX_FAILED;
}

extern const qmx_type probeType;

struct Probe : qmx_object {
  Probe() : qmx_object{sizeof(qmx_object), 0, &probeType} { ++living; }
  ~Probe() {
    --living;
    if (kept) kept->type->release(kept);
  }
  int references = 1;
  qmx_object* kept = nullptr;
  std::string text;      // of the last result
  std::string variable;  // of the last by-reference argument
};

struct Call {
  Probe& self;
  std::vector<qmx_value*> arguments;
  qmx_value& result;

  std::string Text(std::size_t i) const { return {arguments[i]->as.text.data, arguments[i]->as.text.length}; }
  qmx_object* Object(std::size_t i) const { return arguments[i]->as.object; }
  void Give(std::int32_t number) {
    result.kind = QMX_INT32;
    result.as.integer = number;
  }
  void Give(const char* data, std::size_t length) {
    result.kind = QMX_TEXT;
    result.as.text.data = data;
    result.as.text.length = length;
  }
  void Give(qmx_object* object) {
    result.kind = QMX_OBJECT;
    result.as.object = object;
  }
};

// A value of somebody else's, as a result of ours: texts are copied, objects get a reference for the receiver.
void Copy(const qmx_value& from, qmx_value& to, std::string& text) {
  to.kind = from.kind;
  to.as = from.as;
  if (from.kind == QMX_TEXT) {
    text.assign(from.as.text.data ? from.as.text.data : "", from.as.text.length);
    to.as.text.data = text.data();
  }
  if (from.kind == QMX_OBJECT && from.as.object) from.as.object->type->add_ref(from.as.object);
}

// Calls a member of the object that is the first argument; the second is the member's name, the rest its arguments.
void CallObject(Call& call) {
  qmx_object* const object = call.Object(0);
  const std::string name = call.Text(1);
  std::int32_t id = 0;
  qmx_error error{};
  error.struct_size = sizeof error;
  const auto require = [&](qmx_status status) {
    if (status != QMX_OK) {
      throw Failure{error.number, std::string(error.source, error.source_length),
                    std::string(error.description, error.description_length)};
    }
  };
  require(object->type->resolve(object, name.data(), name.size(), &id, &error));
  qmx_value result{};
  result.struct_size = sizeof result;
  require(object->type->invoke(object, id, call.arguments.data() + 2, call.arguments.size() - 2, &result, &error));
  call.result.kind = result.kind;
  call.result.as = result.as;  // an object's reference is passed on
  if (result.kind == QMX_TEXT) {
    call.self.text.assign(result.as.text.data, result.as.text.length);
    call.Give(call.self.text.data(), call.self.text.size());
  }
}

// Calls a member of the object that is the first argument by an id that it did not give.
void CallByUnknownId(Call& call) {
  qmx_object* const object = call.Object(0);
  qmx_error error{};
  error.struct_size = sizeof error;
  const qmx_status status = object->type->invoke(object, 1'000'000, nullptr, 0, &call.result, &error);
  if (status == QMX_OK) throw Failure{0, "Probe", "the unknown id was called"};
  throw Failure{error.number, std::string(error.source, error.source_length),
                std::string(error.description, error.description_length)};
}

void Create(Call& call) {
  const std::string progId = call.Text(0);
  qmx_object* object = nullptr;
  qmx_error error{};
  error.struct_size = sizeof error;
  if (host->create(progId.data(), progId.size(), &object, &error) != QMX_OK) {
    throw Failure{error.number, std::string(error.source, error.source_length),
                  std::string(error.description, error.description_length)};
  }
  call.Give(object);
}

void Keep(Call& call) {
  if (call.self.kept) call.self.kept->type->release(call.self.kept);
  call.self.kept = call.Object(0);
  if (call.self.kept) call.self.kept->type->add_ref(call.self.kept);
}

void GiveKept(Call& call) {
  if (call.self.kept) call.self.kept->type->add_ref(call.self.kept);
  call.Give(call.self.kept);
}

// One moment far away, numbers beyond their kinds, a text without its bytes, objects that cannot be called.
void GiveBroken(Call& call) {
  static const qmx_type emptyType = {sizeof(qmx_type), 0, nullptr, nullptr, nullptr, nullptr, nullptr};
  static qmx_object noType = {sizeof(qmx_object), 0, nullptr};
  static qmx_object noFunctions = {sizeof(qmx_object), 0, &emptyType};
  static qmx_object tooShort = {8, 0, &emptyType};
  const std::string what = call.Text(0);
  call.Give(70000);
  if (what == "kind") call.result.kind = 42;
  if (what == "uint8") call.result.kind = QMX_UINT8;
  if (what == "int16") call.result.kind = QMX_INT16;
  if (what == "text") call.Give(nullptr, 0);
  if (what == "date") {
    call.result.kind = QMX_DATETIME;
    call.result.as.seconds = INT64_MAX;
  }
  if (what == "no type") call.Give(&noType);
  if (what == "no functions") call.Give(&noFunctions);
  if (what == "too short") call.Give(&tooShort);
}

using Work = void (*)(Call&);
const std::pair<const char*, Work> kMembers[] = {
    {"echo", [](Call& call) { Copy(*call.arguments[0], call.result, call.self.text); }},
    {"kind", [](Call& call) { call.Give(call.arguments[0]->kind + 100 * call.arguments[0]->flags); }},
    {"count", [](Call& call) { call.Give(static_cast<std::int32_t>(call.arguments.size())); }},
    {"assign", [](Call& call) { Copy(*call.arguments[1], *call.arguments[0], call.self.variable); }},
    {"assignLast", [](Call& call) { Copy(*call.arguments[0], *call.arguments.back(), call.self.variable); }},
    {"assignAndMake",
     [](Call& call) {
       Copy(*call.arguments[2], *call.arguments[0], call.self.variable);
       call.arguments[1]->kind = QMX_OBJECT;
       call.arguments[1]->as.object = new Probe;
       call.Give(new Probe);
     }},
    {"nothing", [](Call&) {}},
    {"self",
     [](Call& call) {
       ++call.self.references;
       call.Give(&call.self);
     }},
    {"isSelf", [](Call& call) { call.Give(call.Object(0) == &call.self ? 1 : 0); }},
    {"make", [](Call& call) { call.Give(new Probe); }},
    {"none", [](Call& call) { call.Give(static_cast<qmx_object*>(nullptr)); }},
    {"call", CallObject},
    {"callByUnknownId", CallByUnknownId},
    {"create", Create},
    {"keep", Keep},
    {"kept", GiveKept},
    {"living", [](Call& call) { call.Give(living); }},
    {"resolutions", [](Call& call) { call.Give(resolutions); }},
    {"broken", GiveBroken},
    {"fail",
     [](Call& call) {
       throw Failure{call.arguments[0]->as.integer, call.Text(1), call.Text(2)};
     }},
    {"failWithoutWords",
     [](Call&) {
       throw Failure{0, "", ""};
     }},
    {"letAnExceptionOut", [](Call&) { throw std::runtime_error("out it goes"); }},
    {"oddStatus", [](Call&) { throw 7; }},
};

qmx_status Resolve(qmx_object*, const char* name, std::size_t length, std::int32_t* id, qmx_error* error) {
  ++resolutions;
  for (*id = 0; const auto& member : kMembers) {
    if (member.first == std::string_view(name, length)) return QMX_OK;
    ++*id;
  }
  return Fail(error, {QMX_E_NO_SUCH_MEMBER, "Probe", "No member " + std::string(name, length) + "."});
}

qmx_status Invoke(qmx_object* object, std::int32_t id, qmx_value* const* arguments, std::size_t count,
                  qmx_value* result, qmx_error* error) {
  Probe& self = *static_cast<Probe*>(object);
  Call call{self, std::vector<qmx_value*>(arguments, arguments + count), *result};
  try {
    kMembers[id].second(call);
    return QMX_OK;
  } catch (const Failure& failure) {
    return Fail(error, failure);
  } catch (int status) {
    return status;
  }
}

void AddReference(qmx_object* object) { ++static_cast<Probe*>(object)->references; }
void Release(qmx_object* object) {
  if (--static_cast<Probe*>(object)->references == 0) delete static_cast<Probe*>(object);
}

const qmx_type probeType = {sizeof(qmx_type), 0, Resolve, Invoke, AddReference, Release, "probe type"};

qmx_status CreateProbe(const char* progId, std::size_t length, qmx_object** object, qmx_error* error) {
  const std::string_view name(progId, length);
  if (name == "Test.OddStatus") return 7;
  if (name == "Test.NoObject") return QMX_OK;
  if (name == "Test.LetsAnExceptionOut") throw std::runtime_error("out of create");
  if (name != "Test.Probe") return Fail(error, {QMX_E_CANNOT_CREATE, "Probe", "The licence has run out."});
  *object = new Probe;
  return QMX_OK;
}

const qmx_component_server kServer = {
    sizeof(qmx_component_server), QMX_ABI_VERSION, CreateProbe, "probe", nullptr, nullptr, nullptr};

}  // namespace

const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host* given, qmx_error*) {
  host = given;
  return &kServer;
}
