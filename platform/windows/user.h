// The user whom this process runs as.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

namespace qmx {

// The user's security identifier.
class UserSid {
 public:
  UserSid();

  PSID Get() const;             // null if Windows does not say
  std::int64_t Number() const;  // the user's own part of it; 0 if Windows does not say

 private:
  std::vector<std::uint64_t> user_;  // holds a TOKEN_USER
};

}  // namespace qmx
