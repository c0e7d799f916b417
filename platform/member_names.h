// The names of members that components have looked up on objects of the program, by id.
//
// All these objects share the ids. Whether an object has the member shows at the call. Each spelling has its own id, so
// that a trace shows what the component wrote.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>

#include "platform/components.h"

namespace qmx {

class MemberNames {
 public:
  static MemberNames& OfTheProgram();

  // Ids count from 0. The same spelling has the same id.
  std::int32_t Id(std::string_view name);

  // Returns null for an id that no name has. The member stays at its address.
  const Member* Find(std::int32_t id) const;

 private:
  std::map<std::string, std::int32_t, std::less<>> ids_;
  std::deque<Member> members_;
};

}  // namespace qmx
