#include "com/clients_object.h"

#include <string>
#include <vector>

#include "binding/guard.h"
#include "com/objects.h"
#include "com/values.h"

namespace orvan {
namespace {

struct Client : qmx_object {
  IDispatch* interface_;
  int references = 1;
  std::string text;  // of the last result
};

Client& Self(qmx_object* object) { return *static_cast<Client*>(object); }

// The names that servers have looked up, by id. All objects of clients share them.
std::vector<std::string>& Names() {
  static std::vector<std::string> names;
  return names;
}

[[noreturn]] void Fail(HRESULT result, EXCEPINFO& exception) {
  const std::string source = Utf8(exception.bstrSource, SysStringLen(exception.bstrSource));
  const std::string description = Utf8(exception.bstrDescription, SysStringLen(exception.bstrDescription));
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  const HRESULT number = result == DISP_E_EXCEPTION ? exception.scode : result;
  const bool isClassic = (static_cast<unsigned>(number) & 0xFFFF0000U) == 0x800A0000U;
  throw Failure(isClassic ? number & 0xFFFF : number, source.empty() ? "Client" : source,
                description.empty() ? "The client's object failed." : description);
}

// A result of the client for the server. Texts are borrowed from `self`.
void ToServersResult(Client& self, const VARIANT& given, qmx_value& result) {
  VARIANT copy = given;
  ServersArgument converted(copy);
  const std::uint32_t size = result.struct_size;
  result = *converted.Get();
  result.struct_size = size;
  result.flags = 0;
  if (result.kind == QMX_TEXT) {
    self.text.assign(result.as.text.data, result.as.text.length);
    result.as.text.data = self.text.data();
  }
  if (result.kind == QMX_OBJECT && result.as.object) result.as.object->type->add_ref(result.as.object);
}

qmx_status Resolve(qmx_object*, const char* name, std::size_t length, std::int32_t* id, qmx_error* error) {
  return Guarded(error, [&] {
    std::vector<std::string>& names = Names();
    const std::string wanted(name, length);
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (names[i] != wanted) continue;
      *id = static_cast<std::int32_t>(i);
      return;
    }
    names.push_back(wanted);
    *id = static_cast<std::int32_t>(names.size() - 1);
  });
}

qmx_status Invoke(qmx_object* object, std::int32_t id, qmx_value* const*, std::size_t count, qmx_value* result,
                  qmx_error* error) {
  return Guarded(error, [&] {
    if (count > 0)
      throw Failure(QMX_E_WRONG_ARGUMENT_COUNT, "Sandbox", "Objects of a client are called without arguments.");
    Client& self = Self(object);
    const std::string& member = Names().at(static_cast<std::size_t>(id));
    std::wstring name = Wide(member.data(), member.size());
    LPOLESTR names[] = {name.data()};
    DISPID known = DISPID_UNKNOWN;
    if (FAILED(self.interface_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &known)))
      throw Failure(QMX_E_NO_SUCH_MEMBER, "Sandbox", "The client's object has no member \"" + member + "\".");
    DISPPARAMS none{};
    VARIANT given;
    VariantInit(&given);
    EXCEPINFO exception{};
    const HRESULT answer =
        self.interface_->Invoke(known, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none,
                                &given, &exception, nullptr);
    if (FAILED(answer)) Fail(answer, exception);
    try {
      ToServersResult(self, given, *result);
    } catch (...) {
      VariantClear(&given);
      throw;
    }
    VariantClear(&given);
  });
}

void AddReference(qmx_object* object) { ++Self(object).references; }

void Release(qmx_object* object) {
  Client& self = Self(object);
  if (--self.references > 0) return;
  self.interface_->Release();
  delete &self;
}

const qmx_type kType = {sizeof(qmx_type), 0, Resolve, Invoke, AddReference, Release, "object of a COM client"};

}  // namespace

qmx_object* MakeClientsObject(IDispatch* object) {
  auto* const made = new Client{{sizeof(qmx_object), 0, &kType}, object, 1, {}};
  object->AddRef();
  return made;
}

IDispatch* ClientsObject(const qmx_object& object) {
  return object.type == &kType ? static_cast<const Client&>(object).interface_ : nullptr;
}

}  // namespace orvan
