#include "platform/com/creation_failure.h"

#include <cstdint>
#include <optional>

#include "platform/com/class_registration.h"
#include "platform/com/hresult.h"

namespace qmx {
namespace {

constexpr const char* kRegisterAgain = "register the component again";
constexpr const char* kSurrogate = "install the 64-bit one, or let it run in a surrogate process (DllSurrogate)";

// What COM gives for a library that the system does not load.
bool IsOfLoading(HRESULT result) {
  switch (static_cast<std::uint32_t>(result)) {
    case static_cast<std::uint32_t>(REGDB_E_CLASSNOTREG):  // under Wine
    case static_cast<std::uint32_t>(CO_E_DLLNOTFOUND):
    case static_cast<std::uint32_t>(CO_E_ERRORINDLL):
    case 0x8007007E:  // a library that it needs is missing
    case 0x8007007F:  // a function that it needs is missing
    case 0x800700C1:  // no library for this processor
    case 0x8007045A:  // it failed as it was loaded
      return true;
    default:
      return false;
  }
}

std::string Sentence(const std::string& why, HRESULT result, const std::string& advice) {
  return why + ": " + DescribeHresult(result) + "; " + advice;
}

}  // namespace

std::string WhyNoClass(std::string_view name, std::string_view prefix, HRESULT result) {
  if (const std::optional<std::string> id = RegisteredClsid(name))
    return Sentence("the registered CLSID \"" + *id + "\" is none", result, kRegisterAgain);
  std::string why = "nothing is registered under this name";
  if (!prefix.empty()) why += ", nor under \"" + std::string(prefix) + "\", which could make an object of it";
  return Sentence(why, result, "register the component for this user or for the machine");
}

std::string WhyNoObject(HRESULT result) {
  if (SUCCEEDED(result)) return "the creation succeeded without giving an object; report this to the component's maker";
  if (result == E_NOINTERFACE)
    return Sentence("its object has no IDispatch, so it cannot be called by name", result,
                    "use a component that is made for late binding");
  return Sentence("the creation failed", result, "see the component's own logs");
}

std::string WhyNoObject(const CLSID& id, HRESULT result) {
  const ClassRegistration found = RegistrationOf(id);
  if (found.isFor32BitProgramsOnly)
    return Sentence("its class " + found.id + " is registered for 32-bit programs only", result, kSurrogate);
  if (result == REGDB_E_CLASSNOTREG && !found.isRegistered)
    return Sentence("its class " + found.id + " is not registered", result, kRegisterAgain);
  const bool isLibrarys = !found.library.empty() && FAILED(result);
  if (isLibrarys && found.isLibraryMissing)
    return Sentence("its library " + found.library + " is missing", result, "install the component again");
  if (isLibrarys && found.isLibrary32Bit)
    return Sentence("its library " + found.library + " is a 32-bit one", result, kSurrogate);
  if (isLibrarys && result == CLASS_E_CLASSNOTAVAILABLE)
    return Sentence("its library " + found.library + " does not serve the class " + found.id, result,
                    "install a version of the component that does");
  if (isLibrarys && IsOfLoading(result))
    return Sentence("its library " + found.library + " cannot be used", result,
                    "install the libraries that it needs, then register the component again");
  if (result == REGDB_E_CLASSNOTREG)
    return Sentence("its class " + found.id + " has no server that can be used", result, kRegisterAgain);
  return WhyNoObject(result);
}

}  // namespace qmx
