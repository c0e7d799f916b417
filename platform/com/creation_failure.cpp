#include "platform/com/creation_failure.h"

#include <cstdint>
#include <optional>

#include "platform/com/class_registration.h"
#include "platform/com/hresult.h"
#include "platform/names.h"

namespace qmx {
namespace {

constexpr const char* kRegisterAgain = "register the component again";
constexpr const char* kSeeItsLogs = "see the component's own logs";
constexpr const char* kSurrogate = "install the 64-bit one, or let it run in a surrogate process (DllSurrogate)";

constexpr const char* kHidden =
    " is registered for this user only, and Windows hides such components from programs that run as administrator";
constexpr const char* kForTheMachine = "register the component for the machine";
constexpr const char* kDotNet =
    "register it again with the 64-bit regasm /codebase, or install the .NET version that it needs";

std::uint32_t Bits(HRESULT result) { return static_cast<std::uint32_t>(result); }

// What COM gives for a library that the system does not load.
bool IsOfLoading(HRESULT result) {
  switch (Bits(result)) {
    case 0x80040154:  // not registered, under Wine
    case 0x800401F8:  // not found
    case 0x800401F9:  // no library
    case 0x8007007E:  // a library that it needs is missing
    case 0x8007007F:  // a function that it needs is missing
    case 0x800700C1:  // no library for this processor
    case 0x8007045A:  // it failed as it was loaded
      return true;
    default:
      return false;
  }
}

// Whether the library loads .NET, which loads the component. `library` ends with the file's name.
bool IsOfDotNet(std::string_view library) {
  const std::string folded = FoldName(library);
  return folded.ends_with("mscoree.dll") || folded.ends_with(".comhost.dll");
}

// What .NET gives for a component, a library or a version of its own that it does not find.
bool IsOfDotNet(HRESULT result) {
  constexpr std::uint32_t kFileNotFound = 0x80070002;
  const std::uint32_t bits = Bits(result);
  const bool isOfRuntime = (bits & 0xFFFF0000U) == 0x80130000U;
  const bool isOfHost = bits >= 0x80008080U && bits < 0x80008100U;
  return bits == kFileNotFound || isOfRuntime || isOfHost;
}

// What to do about a result that COM gives for a server's process.
std::string AdviceOnProcess(HRESULT result) {
  switch (Bits(result)) {
    case 0x80070005:  // access denied
      return "let the program's user launch and activate the component (dcomcnfg)";
    case 0x80080005:  // the process did not answer
      return "start its process by hand, and check the component's user (dcomcnfg)";
    case 0x8000401A:  // its user cannot log on
      return "check the component's user and its password (dcomcnfg)";
    case 0x80070422:  // its service is disabled
      return "let the component's service start (services.msc)";
    default:
      return kSeeItsLogs;
  }
}

std::string Sentence(const std::string& why, HRESULT result, const std::string& advice) {
  return why + ": " + DescribeHresult(result) + "; " + advice;
}

}  // namespace

std::string WhyNoClass(std::string_view name, std::string_view prefix, HRESULT result) {
  if (const std::optional<NameRegistration> found = RegistrationOf(name)) {
    if (found->isClsid && found->isUsersOnly) return Sentence(std::string("it") + kHidden, result, kForTheMachine);
    return Sentence("the registered CLSID \"" + found->id + "\" is none", result, kRegisterAgain);
  }
  std::string why = "nothing is registered under this name";
  if (!prefix.empty()) why += ", nor under \"" + std::string(prefix) + "\", which could make an object of it";
  return Sentence(why, result, "register the component for this user or for the machine");
}

std::string WhyNoObject(HRESULT result) {
  if (SUCCEEDED(result)) return "the creation succeeded without giving an object; report this to the component's maker";
  if (result == E_NOINTERFACE)
    return Sentence("its object has no IDispatch, so it cannot be called by name", result,
                    "use a component that is made for late binding");
  return Sentence("the creation failed", result, AdviceOnProcess(result));
}

std::string WhyNoObject(const CLSID& id, HRESULT result) {
  const ClassRegistration found = RegistrationOf(id);
  const bool isNotFound = result == REGDB_E_CLASSNOTREG;
  if (isNotFound && found.isUsersOnly) return Sentence("its class " + found.id + kHidden, result, kForTheMachine);
  if (isNotFound && found.isFor32BitProgramsOnly)
    return Sentence("its class " + found.id + " is registered for 32-bit programs only", result, kSurrogate);
  if (isNotFound && !found.isRegistered)
    return Sentence("its class " + found.id + " is not registered", result, kRegisterAgain);
  const bool isLibrarys = !found.library.empty() && FAILED(result);
  if (isLibrarys && found.isLibraryMissing)
    return Sentence("its library " + found.library + " is missing", result, "install the component again");
  if (isLibrarys && found.isLibrary32Bit)
    return Sentence("its library " + found.library + " is a 32-bit one", result, kSurrogate);
  if (isLibrarys && IsOfDotNet(found.library) && IsOfDotNet(result))
    return Sentence("its .NET library behind " + found.library + " cannot be used", result, kDotNet);
  if (isLibrarys && result == CLASS_E_CLASSNOTAVAILABLE)
    return Sentence("its library " + found.library + " does not serve the class " + found.id, result,
                    "install a version of the component that does");
  if (isLibrarys && IsOfLoading(result))
    return Sentence("its library " + found.library + " cannot be used", result,
                    "install the libraries that it needs, then register the component again");
  if (isNotFound) return Sentence("its class " + found.id + " has no server that can be used", result, kRegisterAgain);
  return isLibrarys && result == E_ACCESSDENIED ? Sentence("the creation failed", result, kSeeItsLogs)
                                                : WhyNoObject(result);
}

}  // namespace qmx
