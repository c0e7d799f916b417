#include "platform/com/known_objects.h"

#include <unordered_map>

namespace qmx {
namespace {

using Map = std::unordered_map<const IUnknown*, std::weak_ptr<ComObject>>;

Map& Objects() {
  static auto& objects = *new Map;  // never destroyed, because objects may outlive it
  return objects;
}

}  // namespace

std::shared_ptr<ComObject> KnownObjects::Find(const IUnknown* identity) {
  const auto known = Objects().find(identity);
  return known == Objects().end() ? nullptr : known->second.lock();
}

void KnownObjects::Add(const IUnknown* identity, const std::shared_ptr<ComObject>& object) {
  Objects()[identity] = object;
}

void KnownObjects::Remove(const IUnknown* identity) {
  const auto known = Objects().find(identity);
  if (known != Objects().end() && known->second.expired()) Objects().erase(known);
}

std::size_t KnownObjects::Count() { return Objects().size(); }

}  // namespace qmx
