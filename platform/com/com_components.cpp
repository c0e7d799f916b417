#include "platform/com/com_components.h"

#include <objbase.h>

#include "platform/com/bstr.h"
#include "platform/com/class_registration.h"
#include "platform/com/com_ptr.h"
#include "platform/com/creation_failure.h"
#include "platform/com/objects.h"
#include "platform/error.h"
#include "platform/running_call.h"

namespace qmx {
namespace {

using Answer = FurtherComponents::Answer;

// "java" of "java:java.util.Date"; empty for a name without a prefix. One letter is a drive.
std::string_view Prefix(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon != std::string_view::npos && colon > 1 ? name.substr(0, colon) : std::string_view();
}

Answer Refused(bool isRegistered, const std::string& why) { return {{}, isRegistered, "COM: " + why}; }

Answer FromClass(const CLSID& id, std::string_view progId) {
  ComPtr<IDispatch> object;
  const HRESULT result = CoCreateInstance(id, nullptr, CLSCTX_ALL, IID_IDispatch, object.UntypedReceiver());
  if (FAILED(result) || !object) return Refused(true, WhyNoObject(id, result));
  return {ObjectFrom(object.Get(), progId), true, {}};
}

Answer FromMoniker(std::string_view name) {
  ComPtr<IDispatch> object;
  BIND_OPTS options{};
  options.cbStruct = sizeof options;
  const HRESULT result = CoGetObject(Wide(name).c_str(), &options, IID_IDispatch, object.UntypedReceiver());
  if (FAILED(result) || !object) return Refused(true, WhyNoObject(result));
  return {ObjectFrom(object.Get(), name), true, {}};
}

Answer Created(std::string_view progId) {
  CLSID id;
  const HRESULT found = FindClass(progId, id);
  if (SUCCEEDED(found)) return FromClass(id, progId);
  const std::string_view prefix = Prefix(progId);
  // Without a class for the prefix the name would be taken for a file.
  if (!prefix.empty() && SUCCEEDED(FindClass(prefix, id))) return FromMoniker(progId);
  return Refused(RegisteredClsid(progId).has_value(), WhyNoClass(progId, prefix, found));
}

}  // namespace

FurtherComponents::Answer ComComponents::Create(std::string_view progId) {
  try {
    if (!apartment_) apartment_ = ComApartment::Enter();
    const RunningCall running(RunningCall::KeepText(progId), "the creation");
    return Created(progId);
  } catch (const Error& error) {
    return Refused(false, error.Description());
  }
}

}  // namespace qmx
