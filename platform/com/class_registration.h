// What the registry has of a ProgID and its class. It explains why COM creates no object.
#pragma once

#include <objbase.h>

#include <optional>
#include <string>
#include <string_view>

namespace qmx {

// Stores the class that is registered under a ProgID.
HRESULT FindClass(std::string_view progId, CLSID& id);

// What is registered under a ProgID.
struct NameRegistration {
  std::string id;  // the text of the CLSID, even if it is none
  bool isClsid = false;
  bool isUsersOnly = false;  // not the machine's: Windows hides it from programs that run as administrator
};

// Nothing if there is no CLSID.
std::optional<NameRegistration> RegistrationOf(std::string_view progId);

struct ClassRegistration {
  std::string id;  // "{...}"
  bool isRegistered = false;
  bool isFor32BitProgramsOnly = false;  // whose server no other process can be
  bool isUsersOnly = false;
  std::string library;  // its path as registered; empty for a server that is a process of its own
  bool isLibraryMissing = false;
  bool isLibrary32Bit = false;
};

ClassRegistration RegistrationOf(const CLSID& id);

}  // namespace qmx
