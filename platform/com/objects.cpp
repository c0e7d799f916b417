#include "platform/com/objects.h"

#include <typeinfo>

#include "platform/com/com_object.h"
#include "platform/com/host_dispatch.h"
#include "platform/com/known_objects.h"

namespace qmx {

Object ObjectFrom(IDispatch* dispatch, std::string_view progId) {
  if (!dispatch) return {};
  ComPtr<IUnknown> identity;
  dispatch->QueryInterface(IID_IUnknown, identity.UntypedReceiver());  // null only if the object breaks COM's rules
  if (identity) {
    if (std::shared_ptr<Dispatch> ours = HostDispatch::TargetOf(identity.Get())) return Object(std::move(ours));
  }
  std::shared_ptr<ComObject> known = progId.empty() ? KnownObjects::Find(dispatch) : nullptr;
  if (known) return Object(std::move(known));
  auto made = std::make_shared<ComObject>(ComPtr<IDispatch>::Sharing(dispatch), progId);
  KnownObjects::Add(dispatch, made);
  return Object(std::move(made));
}

ComPtr<IDispatch> DispatchOf(const Object& object) {
  if (!object) return {};
  const Dispatch& target = *object.Target();
  if (typeid(target) != typeid(ComObject)) return HostDispatch::For(object.Target());
  return ComPtr<IDispatch>::Sharing(static_cast<const ComObject&>(target).Interface());
}

}  // namespace qmx
