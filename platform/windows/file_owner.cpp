#include "platform/windows/file_owner.h"

#include <windows.h>
//
#include <aclapi.h>
#include <sddl.h>

#include "platform/windows/user.h"
#include "platform/windows/wide_text.h"

namespace qmx {

std::string StrangeOwner(void* file) {
  PSID owner = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (GetSecurityInfo(file, SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr, nullptr, nullptr,
                      &descriptor) != ERROR_SUCCESS) {
    return "unknown";
  }
  const UserSid user;
  std::string name;
  const bool isOurs = user.Get() && EqualSid(owner, user.Get());
  if (!isOurs && !IsWellKnownSid(owner, WinBuiltinAdministratorsSid) && !IsWellKnownSid(owner, WinLocalSystemSid)) {
    wchar_t* text = nullptr;
    name = ConvertSidToStringSidW(owner, &text) ? NarrowText(text) : "unknown";
    LocalFree(text);
  }
  LocalFree(descriptor);
  return name;
}

}  // namespace qmx
