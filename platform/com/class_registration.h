// What the registry has of a ProgID and its class. It explains why COM creates no object.
#pragma once

#include <objbase.h>

#include <optional>
#include <string>
#include <string_view>

namespace qmx {

// Stores the class that is registered under a ProgID.
HRESULT FindClass(std::string_view progId, CLSID& id);

// Returns the text of the CLSID that is registered under a ProgID, even if it is none; nothing if there is none.
std::optional<std::string> RegisteredClsid(std::string_view progId);

struct ClassRegistration {
  std::string id;  // "{...}"
  bool isRegistered = false;
  bool isFor32BitProgramsOnly = false;
  std::string library;  // its path as registered; empty for a server that is a process of its own
  bool isLibraryMissing = false;
  bool isLibrary32Bit = false;
};

ClassRegistration RegistrationOf(const CLSID& id);

}  // namespace qmx
