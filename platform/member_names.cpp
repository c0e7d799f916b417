#include "platform/member_names.h"

namespace qmx {

MemberNames& MemberNames::OfTheProgram() {
  static auto& names = *new MemberNames;  // never destroyed, because components may call until the process ends
  return names;
}

std::int32_t MemberNames::Id(std::string_view name) {
  const auto known = ids_.find(name);
  if (known != ids_.end()) return known->second;
  const auto id = static_cast<std::int32_t>(members_.size());
  const auto added = ids_.emplace(name, id).first;
  members_.emplace_back(std::string_view(added->first));
  return id;
}

const Member* MemberNames::Find(std::int32_t id) const {
  if (id < 0 || static_cast<std::size_t>(id) >= members_.size()) return nullptr;
  return &members_[static_cast<std::size_t>(id)];
}

}  // namespace qmx
