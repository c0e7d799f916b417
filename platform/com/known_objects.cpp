#include "platform/com/known_objects.h"

#include <unordered_map>

namespace qmx {
namespace {

using Map = std::unordered_map<const IDispatch*, std::weak_ptr<ComObject>>;

Map& Objects() {
  static auto& objects = *new Map;  // never destroyed, because objects may outlive it
  return objects;
}

}  // namespace

std::shared_ptr<ComObject> KnownObjects::Find(const IDispatch* dispatch) {
  const auto known = Objects().find(dispatch);
  return known == Objects().end() ? nullptr : known->second.lock();
}

void KnownObjects::Add(const IDispatch* dispatch, const std::shared_ptr<ComObject>& object) {
  Objects()[dispatch] = object;
}

void KnownObjects::Remove(const IDispatch* dispatch) {
  const auto known = Objects().find(dispatch);
  if (known != Objects().end() && known->second.expired()) Objects().erase(known);
}

std::size_t KnownObjects::Count() { return Objects().size(); }

}  // namespace qmx
