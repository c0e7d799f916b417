#include "platform/com/com_components.h"

#include <objbase.h>

#include "platform/com/bstr.h"
#include "platform/com/com_ptr.h"
#include "platform/com/hresult.h"
#include "platform/com/objects.h"
#include "platform/error.h"
#include "platform/running_call.h"

namespace qmx {
namespace {

struct Creation {
  HRESULT result;
  bool isRegistered;
  ComPtr<IDispatch> object;
};

// Stores the class that is registered under the name.
HRESULT FindClass(std::string_view name, CLSID& id) { return CLSIDFromProgID(Wide(name).c_str(), &id); }

// "java" of "java:java.util.Date"; empty for a name without a prefix. One letter is a drive.
std::string_view Prefix(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon != std::string_view::npos && colon > 1 ? name.substr(0, colon) : std::string_view();
}

Creation CreateFromClass(const CLSID& id) {
  Creation creation{E_FAIL, true, {}};
  creation.result = CoCreateInstance(id, nullptr, CLSCTX_ALL, IID_IDispatch, creation.object.UntypedReceiver());
  return creation;
}

Creation CreateFromMoniker(std::string_view name) {
  Creation creation{E_FAIL, true, {}};
  BIND_OPTS options{};
  options.cbStruct = sizeof options;
  creation.result = CoGetObject(Wide(name).c_str(), &options, IID_IDispatch, creation.object.UntypedReceiver());
  return creation;
}

Creation Created(std::string_view progId) {
  CLSID id;
  const HRESULT found = FindClass(progId, id);
  if (SUCCEEDED(found)) return CreateFromClass(id);
  const std::string_view prefix = Prefix(progId);
  // Without a class for the prefix the name would be taken for a file.
  if (!prefix.empty() && SUCCEEDED(FindClass(prefix, id))) return CreateFromMoniker(progId);
  return {found, false, {}};
}

std::string Refusal(const Creation& creation) {
  const std::string result = DescribeHresult(creation.result);
  if (!creation.isRegistered) return "COM: nothing is registered under this name: " + result;
  if (creation.result == E_NOINTERFACE)
    return "COM: its object cannot be called by name, because it has no IDispatch: " + result;
  if (creation.result == REGDB_E_CLASSNOTREG)
    return "COM: its class has no server that a 64-bit program can use: " + result;
  return "COM: the creation failed with " + result;
}

}  // namespace

FurtherComponents::Answer ComComponents::Create(std::string_view progId) {
  try {
    if (!apartment_) apartment_ = ComApartment::Enter();
    const RunningCall running(RunningCall::KeepText(progId), "the creation");
    Creation creation = Created(progId);
    if (SUCCEEDED(creation.result) && !creation.object) creation.result = E_POINTER;
    if (FAILED(creation.result)) return {{}, creation.isRegistered, Refusal(creation)};
    return {ObjectFrom(creation.object.Get(), progId), true, {}};
  } catch (const Error& error) {
    return {{}, false, "COM: " + error.Description()};
  }
}

}  // namespace qmx
