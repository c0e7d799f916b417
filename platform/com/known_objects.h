// The living objects of components by their interfaces, so that one that comes back is the same Object.
#pragma once

#include <cstddef>
#include <memory>

struct IDispatch;

namespace qmx {

class ComObject;

// Interfaces are borrowed while their objects live. An object's identity, its IUnknown, does not serve: a component may
// give one object several interfaces with members of their own.
class KnownObjects {
 public:
  static std::shared_ptr<ComObject> Find(const IDispatch* dispatch);  // null for none
  static void Add(const IDispatch* dispatch, const std::shared_ptr<ComObject>& object);
  static void Remove(const IDispatch* dispatch);  // unless an object that lives was added for it since

  static std::size_t Count();
};

}  // namespace qmx
