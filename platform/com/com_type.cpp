#include "platform/com/com_type.h"

#include <array>
#include <cstring>
#include <memory>

#include "platform/com/bstr.h"
#include "platform/com/com_ptr.h"
#include "platform/names.h"

namespace qmx {
namespace {

using GuidBytes = std::array<unsigned char, sizeof(GUID)>;

// Of JScript's and VBScript's objects. They number their members in the order of their declarations.
constexpr GUID kOfScripts = {0xC59C6B12, 0xF6C1, 0x11CF, {0x88, 0x35, 0x00, 0xA0, 0xC9, 0x11, 0xE8, 0xB2}};

ComPtr<ITypeInfo> InformationOf(IDispatch& object) {
  ComPtr<ITypeInfo> information;
  if (FAILED(object.GetTypeInfo(0, LOCALE_USER_DEFAULT, information.Receiver()))) return {};
  return information;
}

// Zeros if it has none that tells types from each other.
GuidBytes GuidOf(ITypeInfo& information) {
  GuidBytes bytes{};
  TYPEATTR* attributes = nullptr;
  if (FAILED(information.GetTypeAttr(&attributes)) || !attributes) return bytes;
  if (!IsEqualGUID(attributes->guid, kOfScripts)) std::memcpy(bytes.data(), &attributes->guid, bytes.size());
  information.ReleaseTypeAttr(attributes);
  return bytes;
}

std::string NameOf(ITypeInfo& information) {
  OwnedBstr name;
  if (FAILED(information.GetDocumentation(MEMBERID_NIL, name.Receiver(), nullptr, nullptr, nullptr))) return {};
  return Utf8WithReplacements(name.View());
}

}  // namespace

ComType& ComType::Of(IDispatch& object) {
  static auto& untyped = *new ComType(false, {});
  static auto& types = *new std::map<GuidBytes, std::unique_ptr<ComType>>;
  const ComPtr<ITypeInfo> information = InformationOf(object);
  if (!information) return untyped;
  const GuidBytes guid = GuidOf(*information);
  if (guid == GuidBytes{}) return untyped;
  std::unique_ptr<ComType>& type = types[guid];
  if (!type) type.reset(new ComType(true, NameOf(*information)));
  return *type;
}

ComType::Found ComType::Find(IDispatch& object, std::string_view member) {
  const std::string folded = FoldName(member);
  const auto known = ids_.find(folded);
  if (known != ids_.end()) return {S_OK, known->second, true};

  std::wstring name = Wide(member);
  LPOLESTR names[] = {name.data()};
  DISPID id = DISPID_UNKNOWN;
  const HRESULT result = object.GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(result)) return {result, id, false};

  const ComPtr<ITypeInfo> information = hasInformation_ ? InformationOf(object) : ComPtr<ITypeInfo>();
  MEMBERID described = DISPID_UNKNOWN;
  const bool isDescribed = information && SUCCEEDED(information->GetIDsOfNames(names, 1, &described));
  const bool isRemembered = isDescribed && described == id;
  if (isRemembered) ids_.emplace(folded, id);
  return {S_OK, id, isRemembered};
}

}  // namespace qmx
