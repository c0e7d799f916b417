#include "platform/com/com_components.h"

#include <objbase.h>

#include "platform/com/bstr.h"
#include "platform/com/class_registration.h"
#include "platform/com/com_ptr.h"
#include "platform/com/creation_failure.h"
#include "platform/com/error_text.h"
#include "platform/com/floating_point.h"
#include "platform/com/objects.h"
#include "platform/error.h"
#include "platform/names.h"
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

template <typename Create>
HRESULT Tried(Create&& create) {
  const FloatingPointKept kept;
  ForgetErrorText();
  return create();
}

Answer NotCreated(std::string why) {
  const std::string text = TakeErrorText();
  if (!text.empty()) why += " (it says: " + text + ")";
  return Refused(true, why);
}

Answer FromClass(const CLSID& id, std::string_view progId) {
  ComPtr<IDispatch> object;
  const HRESULT result =
      Tried([&] { return CoCreateInstance(id, nullptr, CLSCTX_ALL, IID_IDispatch, object.UntypedReceiver()); });
  if (FAILED(result) || !object) return NotCreated(WhyNoObject(id, result));
  return {ObjectFrom(object.Get(), progId), true, {}};
}

Answer FromMoniker(std::string_view name) {
  ComPtr<IDispatch> object;
  BIND_OPTS options{};
  options.cbStruct = sizeof options;
  const std::wstring wide = Wide(name);
  const HRESULT result =
      Tried([&] { return CoGetObject(wide.c_str(), &options, IID_IDispatch, object.UntypedReceiver()); });
  if (FAILED(result) || !object) return NotCreated(WhyNoObject(result));
  return {ObjectFrom(object.Get(), name), true, {}};
}

// Loads the server of a class, or starts it. Creates no object.
Answer FromServer(const CLSID& id) {
  ComPtr<IUnknown> factory;
  const HRESULT result =
      Tried([&] { return CoGetClassObject(id, CLSCTX_ALL, nullptr, IID_IUnknown, factory.UntypedReceiver()); });
  if (FAILED(result) || !factory) return NotCreated(WhyNoObject(id, result));
  return {{}, true, {}};
}

// Looks the name up, and passes what it finds to one of the two.
template <typename OfClass, typename OfMoniker>
Answer LookUp(std::string_view progId, OfClass ofClass, OfMoniker ofMoniker) {
  CLSID id;
  const HRESULT found = FindClass(progId, id);
  if (SUCCEEDED(found)) return ofClass(id);
  const std::string_view prefix = Prefix(progId);
  // Without a class for the prefix the name would be taken for a file.
  if (!prefix.empty() && SUCCEEDED(FindClass(prefix, id))) return ofMoniker();
  return Refused(RegistrationOf(progId).has_value(), WhyNoClass(progId, prefix, found));
}

}  // namespace

template <typename OfClass, typename OfMoniker>
Answer ComComponents::Ask(std::string_view progId, const char* what, OfClass ofClass, OfMoniker ofMoniker) {
  try {
    std::string folded = FoldName(progId);
    const auto known = unregistered_.find(folded);
    if (known != unregistered_.end()) return known->second;
    if (!apartment_) apartment_ = ComApartment::Enter();
    const RunningCall running(RunningCall::KeepText(progId), what);
    Answer answer = LookUp(progId, ofClass, ofMoniker);
    if (!answer.isRegistered) unregistered_.emplace(std::move(folded), answer);
    return answer;
  } catch (const Error& error) {
    return Refused(false, error.Description());
  }
}

Answer ComComponents::Create(std::string_view progId) {
  return Ask(
      progId, "the creation", [&](const CLSID& id) { return FromClass(id, progId); },
      [&] { return FromMoniker(progId); });
}

FurtherComponents::Registration ComComponents::Find(std::string_view progId) {
  const Answer found = Ask(progId, "the loading", FromServer, [] { return Answer{{}, true, {}}; });
  return {found.isRegistered, found.refusal};
}

}  // namespace qmx
