#include "com/served_object.h"

#include <deque>
#include <unordered_map>
#include <vector>

#include "binding/guard.h"
#include "com/served_type.h"
#include "com/values.h"

namespace orvan {
namespace {

// By their servers' objects.
std::unordered_map<qmx_object*, ServedObject*>& Living() {
  static auto& living = *new std::unordered_map<qmx_object*, ServedObject*>;  // never destroyed: clients release late
  return living;
}

// Known to this library only.
constexpr GUID kOwnInterface = {0x6B1E0D2A, 0x94C3, 0x4F0E, {0xA1, 0x7D, 0x3C, 0x52, 0x0E, 0x88, 0x91, 0xF4}};

HRESULT ResultOf(std::int32_t number) {
  const bool isClassic = number > 0 && number <= 0xFFFF;
  return isClassic ? static_cast<HRESULT>(0x800A0000U | static_cast<unsigned>(number)) : number < 0 ? number : E_FAIL;
}

HRESULT Describe(const qmx_error& error, EXCEPINFO* exception) noexcept {
  const HRESULT result = ResultOf(error.number);
  if (!exception) return result;
  try {
    *exception = EXCEPINFO{};
    exception->scode = result;
    exception->bstrSource = NewBstr(error.source, error.source_length);
    exception->bstrDescription = NewBstr(error.description, error.description_length);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
  return DISP_E_EXCEPTION;
}

// One call of a client.
class Call {
 public:
  explicit Call(const DISPPARAMS& parameters) {
    for (std::size_t i = parameters.cArgs; i > 0; --i) {  // the last argument comes first
      pointers_.push_back(arguments_.emplace_back(parameters.rgvarg[i - 1]).Get());
    }
  }

  qmx_status Make(qmx_object& object, std::int32_t id, VARIANT* result, qmx_error& error) {
    qmx_value given{};
    given.struct_size = sizeof given;
    const qmx_status status = object.type->invoke(&object, id, pointers_.data(), pointers_.size(), &given, &error);
    if (status != QMX_OK) return status;
    VARIANT converted;
    VariantInit(&converted);
    ToCom(given, converted);
    for (ServersArgument& argument : arguments_) argument.WriteBack();
    if (result) {
      *result = converted;
    } else {
      VariantClear(&converted);
    }
    return QMX_OK;
  }

 private:
  std::deque<ServersArgument> arguments_;
  std::vector<qmx_value*> pointers_;
};

}  // namespace

IDispatch* ServedObject::For(qmx_object* object) {
  const auto living = Living().find(object);
  if (living == Living().end()) return new ServedObject(object);
  object->type->release(object);
  living->second->AddRef();
  return living->second;
}

qmx_object* ServedObject::Behind(IDispatch& client) {
  void* own = nullptr;
  if (FAILED(client.QueryInterface(kOwnInterface, &own))) return nullptr;
  auto* const served = static_cast<ServedObject*>(own);
  served->Release();  // the client still holds it
  return served->object_;
}

ServedObject::ServedObject(qmx_object* object) : object_(object) { Living()[object] = this; }

ServedObject::~ServedObject() {
  Living().erase(object_);
  object_->type->release(object_);
}

HRESULT ServedObject::QueryInterface(REFIID id, void** object) noexcept {
  const bool isKnown = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch) || IsEqualIID(id, kOwnInterface);
  *object = isKnown ? this : nullptr;
  if (!isKnown) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG ServedObject::Release() noexcept {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT ServedObject::GetTypeInfoCount(UINT* count) noexcept {
  *count = 1;
  return S_OK;
}

HRESULT ServedObject::GetTypeInfo(UINT index, LCID, ITypeInfo** information) noexcept {
  *information = index == 0 ? MakeTypeInformation(*object_) : nullptr;
  return index == 0 ? S_OK : DISP_E_BADINDEX;
}

HRESULT ServedObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept {
  if (count == 0) return E_INVALIDARG;
  for (UINT i = 1; i < count; ++i) ids[i] = DISPID_UNKNOWN;  // arguments have no names
  const HRESULT found = FindMember(*object_, names[0], ids[0]);
  return count == 1 ? found : DISP_E_UNKNOWNNAME;
}

HRESULT ServedObject::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                             EXCEPINFO* exception, UINT*) noexcept {
  if (parameters->cNamedArgs > 0) return DISP_E_NONAMEDARGS;
  if (id < kFirstMember || (flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) == 0) return DISP_E_MEMBERNOTFOUND;
  qmx_error error{};
  error.struct_size = sizeof error;
  qmx_status status = QMX_FAILED;
  const qmx_status made =
      Guarded(&error, [&] { status = Call(*parameters).Make(*object_, id - kFirstMember, result, error); });
  return made == QMX_OK && status == QMX_OK ? S_OK : Describe(error, exception);
}

}  // namespace orvan
