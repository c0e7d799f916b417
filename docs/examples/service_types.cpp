// A complete component server in C++: three service types that never change, listed by their manager.
//
// It sees the public header and nothing else of the program. A real bridge asks the ERP where this one looks into a
// table of its own; all the rest is what a bridge needs.
#include <qmx/component_server.h>
#include <strings.h>

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>

namespace {

// How a member fails: thrown anywhere in the server, caught at its boundary.
struct Failure {
  std::int32_t number;
  std::string description;
};

// The texts of the last failure, valid until the next call into this library.
std::string lastDescription;

void Describe(qmx_error* error, std::int32_t number, std::string_view description) {
  static constexpr std::string_view kSource = "Service types example";
  lastDescription = description;
  error->number = number;
  error->source = kSource.data();
  error->source_length = kSource.size();
  error->description = lastDescription.data();
  error->description_length = lastDescription.size();
}

// The boundary: every function that the host calls runs its work in here, and no exception gets past.
template <typename Work>
qmx_status AtTheBoundary(qmx_error* error, Work work) {
  try {
    work();
    return QMX_OK;
  } catch (const Failure& failure) {
    Describe(error, failure.number, failure.description);
  } catch (const std::exception& other) {
    Describe(error, QMX_E_INTERNAL, other.what());
  } catch (...) {
    Describe(error, QMX_E_INTERNAL, "An unknown exception.");
  }
  return QMX_FAILED;
}

bool SameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

struct Arguments {
  qmx_value* const* values;
  std::size_t count;

  void Expect(std::size_t wanted) const {
    if (count != wanted) {
      throw Failure{QMX_E_WRONG_ARGUMENT_COUNT,
                    std::to_string(wanted) + " arguments expected, " + std::to_string(count) + " given."};
    }
  }
  std::string_view Text(std::size_t i) const {
    if (values[i]->kind != QMX_TEXT) throw Failure{QMX_E_TYPE_MISMATCH, "A text is expected."};
    return {values[i]->as.text.data, values[i]->as.text.length};
  }
};

// A text result stays the server's: what `text` refers to must last until the next call on the same object.
void GiveText(qmx_value* result, std::string_view text) {
  result->kind = QMX_TEXT;
  result->as.text.data = text.data();
  result->as.text.length = text.size();
}

void GiveBoolean(qmx_value* result, bool value) {
  result->kind = QMX_BOOLEAN;
  result->as.boolean = value ? 1 : 0;
}

// An object result comes with a reference for the host: a new object has exactly that one.
void GiveObject(qmx_value* result, qmx_object* object) {
  result->kind = QMX_OBJECT;
  result->as.object = object;
}

// What every class of objects shares: the four functions of a qmx_type over a list of member names and a Call.
template <typename Self>
struct Component : qmx_object {
  Component() : qmx_object{sizeof(qmx_object), 0, &kType} {}

  static qmx_status Resolve(qmx_object*, const char* name, std::size_t length, std::int32_t* id, qmx_error* error) {
    return AtTheBoundary(error, [&] {
      *id = 0;
      for (const std::string_view member : Self::kMembers) {
        if (SameName(member, {name, length})) return;
        ++*id;
      }
      throw Failure{QMX_E_NO_SUCH_MEMBER, std::string(Self::kName) + " has no member " + std::string(name, length)};
    });
  }
  static qmx_status Invoke(qmx_object* object, std::int32_t id, qmx_value* const* values, std::size_t count,
                           qmx_value* result, qmx_error* error) {
    return AtTheBoundary(error, [&] { static_cast<Self*>(object)->Call(id, Arguments{values, count}, result); });
  }
  static void AddReference(qmx_object* object) { ++static_cast<Self*>(object)->references; }
  static void Release(qmx_object* object) {
    if (--static_cast<Self*>(object)->references == 0) delete static_cast<Self*>(object);
  }

  static constexpr qmx_type kType = {sizeof(qmx_type), 0, Resolve, Invoke, AddReference, Release, Self::kName};
  std::size_t references = 1;
};

struct Row {
  std::string_view type, description, procedure, availability;
};
constexpr Row kRows[] = {{"FLD", "Field service", "P010", "STD"},
                         {"INS", "Installation", "P020", "STD"},
                         {"REP", "Repair in the workshop", "P030", "WSH"}};

struct ServiceType : Component<ServiceType> {
  static constexpr const char* kName = "ServiceTypes.ServiceTypes";
  static constexpr std::string_view kMembers[] = {"getServiceType", "getServiceTypeDescription", "getServiceProcedure",
                                                  "getavailabilityType"};
  explicit ServiceType(const Row& row) : row(row) {}

  void Call(std::int32_t id, Arguments arguments, qmx_value* result) {
    arguments.Expect(0);
    const std::string_view columns[] = {row.type, row.description, row.procedure, row.availability};
    GiveText(result, columns[id]);
  }

  const Row& row;
};

struct Enumeration : Component<Enumeration> {
  static constexpr const char* kName = "enumeration of service types";
  static constexpr std::string_view kMembers[] = {"hasMoreElements", "nextElement"};
  Enumeration(std::string_view from, std::string_view to) : to(to) {
    while (next != std::end(kRows) && next->type < from) ++next;
  }

  bool More() const { return next != std::end(kRows) && next->type <= to; }
  void Call(std::int32_t id, Arguments arguments, qmx_value* result) {
    arguments.Expect(0);
    if (id == 0) return GiveBoolean(result, More());
    if (!More()) throw Failure{QMX_E_INVALID_CALL, "No more service types."};
    GiveObject(result, new ServiceType(*next++));
  }

  const Row* next = std::begin(kRows);
  std::string to;
};

struct Manager : Component<Manager> {
  static constexpr const char* kName = "ServiceTypes.ServiceTypesManager";
  static constexpr std::string_view kMembers[] = {"initialize", "List", "Close"};

  void Call(std::int32_t id, Arguments arguments, qmx_value* result) {
    switch (id) {
      case 0:
        arguments.Expect(1);
        businessComponent = arguments.Text(0);  // a copy: the argument is the host's
        return;
      case 1:
        arguments.Expect(2);
        if (businessComponent.empty()) throw Failure{QMX_E_INVALID_CALL, "List was called before initialize."};
        return GiveObject(result, new Enumeration(arguments.Text(0), arguments.Text(1)));
      default:
        arguments.Expect(0);
        businessComponent.clear();
    }
  }

  std::string businessComponent;
};

qmx_status Create(const char* progId, std::size_t length, qmx_object** object, qmx_error* error) {
  return AtTheBoundary(error, [&] {
    if (!SameName({progId, length}, Manager::kName)) throw Failure{QMX_E_CANNOT_CREATE, "Only the manager is served."};
    *object = new Manager;
  });
}

const qmx_component_server kServer = {sizeof(qmx_component_server),
                                      QMX_ABI_VERSION,
                                      Create,
                                      "service types example 1.0",
                                      nullptr,  // it has no settings, and nothing to describe or to check
                                      nullptr,
                                      nullptr};

}  // namespace

const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host*, qmx_error*) { return &kServer; }
