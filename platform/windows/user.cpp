#include "platform/windows/user.h"

#include "platform/windows/handle.h"

namespace qmx {

UserSid::UserSid() {
  HANDLE opened = nullptr;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened)) return;
  const Handle token(opened);
  DWORD size = 0;
  GetTokenInformation(token.Get(), TokenUser, nullptr, 0, &size);
  user_.resize(size / sizeof(std::uint64_t) + 1);
  if (!GetTokenInformation(token.Get(), TokenUser, user_.data(), size, &size)) user_.clear();
}

PSID UserSid::Get() const {
  return user_.empty() ? nullptr : reinterpret_cast<const TOKEN_USER*>(user_.data())->User.Sid;
}

std::int64_t UserSid::Number() const {
  const PSID sid = Get();
  const int parts = sid ? *GetSidSubAuthorityCount(sid) : 0;
  return parts > 0 ? *GetSidSubAuthority(sid, static_cast<DWORD>(parts - 1)) : 0;
}

}  // namespace qmx
