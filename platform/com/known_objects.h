// The living objects of components by their identities, so that an object that comes back is the same Object.
#pragma once

#include <cstddef>
#include <memory>

struct IUnknown;

namespace qmx {

class ComObject;

// The identity of an object is its IUnknown, which is borrowed while the object lives.
class KnownObjects {
 public:
  static std::shared_ptr<ComObject> Find(const IUnknown* identity);  // null for none
  static void Add(const IUnknown* identity, const std::shared_ptr<ComObject>& object);
  static void Remove(const IUnknown* identity);  // unless an object that lives was added for it since

  static std::size_t Count();
};

}  // namespace qmx
